// A JDBC client: statements, parameters, a transaction, and a recordset that is scrolled and changed row by row.
import java.sql.Connection;
import java.sql.DriverManager;
import java.sql.PreparedStatement;
import java.sql.ResultSet;
import java.sql.SQLException;
import java.sql.Statement;

public class Istemci {
  static int count(String url, String password) throws SQLException {
    try (Connection other = DriverManager.getConnection(url, "sa", password);
        Statement statement = other.createStatement();
        ResultSet rows = statement.executeQuery("SELECT COUNT(*) FROM J")) {
      rows.next();
      return rows.getInt(1);
    }
  }

  public static void main(String[] arguments) throws Exception {
    Class.forName("net.sourceforge.jtds.jdbc.Driver");
    String url = "jdbc:jtds:sqlserver://127.0.0.1:" + arguments[0] + "/DENEME;appName=jdbc";
    try (Connection connection = DriverManager.getConnection(url, "sa", arguments[1])) {
      try (Statement statement = connection.createStatement()) {
        statement.execute("CREATE TABLE J(ID INT IDENTITY PRIMARY KEY, Ad VARCHAR(20), Tutar DECIMAL(9,2))");
      }
      connection.setAutoCommit(false);
      try (PreparedStatement insert = connection.prepareStatement("INSERT INTO J(Ad,Tutar) VALUES(?,?)")) {
        for (int i = 1; i <= 3; i++) {
          insert.setString(1, "Şık " + i);
          insert.setBigDecimal(2, new java.math.BigDecimal("1.25").multiply(new java.math.BigDecimal(i)));
          insert.executeUpdate();
        }
      }
      System.out.print(count(url, arguments[1]) + " ");
      connection.commit();
      System.out.println(count(url, arguments[1]));
      try (Statement statement = connection.createStatement()) {
        statement.executeUpdate("DELETE FROM J");
      }
      connection.rollback();
      connection.setAutoCommit(true);
      try (Statement statement =
              connection.createStatement(ResultSet.TYPE_SCROLL_SENSITIVE, ResultSet.CONCUR_UPDATABLE);
          ResultSet rows = statement.executeQuery("SELECT ID, Ad, Tutar FROM J")) {
        rows.last();
        System.out.println(rows.getRow() + " " + rows.getString("Ad") + " " + rows.getBigDecimal("Tutar"));
        rows.first();
        rows.updateString("Ad", "değişti");
        rows.updateRow();
        rows.absolute(2);
        rows.deleteRow();
      }
      try (Statement statement = connection.createStatement();
          ResultSet rows = statement.executeQuery("SELECT Ad, Tutar FROM J ORDER BY ID")) {
        while (rows.next()) System.out.println(rows.getString(1) + " " + rows.getBigDecimal(2));
      }
      try (ResultSet columns = connection.getMetaData().getColumns("DENEME", null, "J", "%")) {
        while (columns.next()) System.out.println(columns.getString(4) + " " + columns.getString(6));
      }
      try (Statement statement = connection.createStatement()) {
        statement.executeQuery("SELECT * FROM YOK");
      } catch (SQLException refused) {
        System.out.println(refused.getErrorCode() + " " + refused.getMessage());
      }
    }
  }
}
