#include "db/odbc/sqlserver.h"

#include <algorithm>
#include <array>
#include <filesystem>

#include "db/table_name.h"

namespace db {
namespace {

constexpr int cannotOpenDatabase = 4060, cannotOpenDefault = 4064, notTrusted = 18452;
// FreeTDS's own number that says no more than that there is no connection.
constexpr int connectionFailed = 20002;

// Login failures: unknown name or password, no trusted connection, disabled, locked or expired.
bool isLoginNumber(int number) {
  return number >= 18450 && number <= 18489;
}

// FreeTDS's own numbers for a link that timed out, broke, is dead or out of step; their SQLSTATE does not
// tell.
bool isLostLink(int number) {
  static constexpr std::array numbers = {20002, 20003, 20004, 20006, 20009, 20017, 20020, 20047};
  return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

std::vector<std::string> registeredDrivers() {
  std::vector<std::string> out;
  const OdbcHandle environment(SQL_HANDLE_ENV, SQL_NULL_HANDLE);
  SQLSetEnvAttr(environment.get(), SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
  SQLCHAR name[256], attributes[1024];
  SQLUSMALLINT direction = SQL_FETCH_FIRST;
  while (succeeded(SQLDrivers(environment.get(), direction, name, sizeof name, nullptr, attributes,
                              sizeof attributes, nullptr))) {
    out.emplace_back(reinterpret_cast<char*>(name));
    direction = SQL_FETCH_NEXT;
  }
  return out;
}

std::string findDriver() {
  const auto names = registeredDrivers();
  if (std::find(names.begin(), names.end(), "FreeTDS") != names.end()) return "FreeTDS";
  static constexpr std::array<const char*, 6> libraries = {"/usr/lib/x86_64-linux-gnu/odbc/libtdsodbc.so",
                                                           "/usr/lib/aarch64-linux-gnu/odbc/libtdsodbc.so",
                                                           "/usr/lib64/libtdsodbc.so",
                                                           "/usr/lib/odbc/libtdsodbc.so",
                                                           "/usr/lib/libtdsodbc.so",
                                                           "/usr/local/lib/libtdsodbc.so"};
  std::error_code ignored;
  for (const char* library : libraries) {
    if (std::filesystem::exists(library, ignored)) return library;
  }
  for (const auto& name : names) {
    if (name.find("SQL Server") != std::string::npos) return name;
  }
  throw SqlError(ErrorKind::LinkBroken, 0,
                 "SQL Server için ODBC sürücüsü bulunamadı (tdsodbc paketi kurulu olmalıdır).");
}

bool isFreeTds(const std::string& driver) {
  return driver == "FreeTDS" || driver.find("tdsodbc") != std::string::npos;
}

// A value in a connection text, in braces where it has to be. FreeTDS takes everything up to the next ";",
// and in braces everything up to "};" without undoubling a bracket.
std::string attribute(const std::string& value, bool freeTds) {
  const char* special = freeTds ? ";" : "[]{}(),;?*=!@ \t'\"";
  if (value.find_first_of(special) == std::string::npos && !value.starts_with('{')) return value;
  std::string out = "{";
  for (const char c : value) {
    out += c;
    if (c == '}' && !freeTds) out += c;
  }
  return out + "}";
}

struct Address {
  std::string host;  // with "\INSTANCE" when one is named
  std::string port;  // empty when an instance is named: the server's browser service tells it
};

Address addressOf(std::string server) {
  if (sameName(server.substr(0, 4), "tcp:")) server.erase(0, 4);
  Address address;
  if (const auto comma = server.find(','); comma != std::string::npos) {
    address.port = server.substr(comma + 1);
    server.erase(comma);
    address.port.erase(0, address.port.find_first_not_of(' '));
  }
  const auto slash = std::min(server.find('\\'), server.size());
  std::string host = server.substr(0, slash);
  if (host.empty() || host == "." || sameName(host, "(local)")) host = "localhost";
  // A port given beside an instance name decides alone.
  if (!address.port.empty()) return {host, address.port};
  if (slash < server.size()) return {host + server.substr(slash), ""};
  return {host, "1433"};
}

}  // namespace

std::string SqlServerDialect::driverText(const ConnectionParts& parts) const {
  const std::string driver = driver_.empty() ? findDriver() : driver_;
  const bool freeTds = isFreeTds(driver);
  const Address address = addressOf(parts.server);
  std::string text = "DRIVER={" + driver + "};SERVER=" + address.host;
  if (freeTds) {
    if (!address.port.empty()) text += ";PORT=" + address.port;
    text += ";TDS_Version=7.4;ClientCharset=UTF-8";
  } else {
    if (!address.port.empty()) text += "," + address.port;
    text += ";TrustServerCertificate=yes";
  }
  if (parts.integrated) {
    text += ";Trusted_Connection=yes";
  } else {
    text += ";UID=" + attribute(parts.login, freeTds) + ";PWD=" + attribute(parts.password, freeTds);
  }
  if (!parts.database.empty()) text += ";DATABASE=" + attribute(parts.database, freeTds);
  return text + ";";
}

std::string SqlServerDialect::sessionSettings() const {
  // What the OLE DB provider sets on a connection, the language that the date texts of the system are
  // written for, and no limit on long text, which a FreeTDS configuration may cut.
  return "SET ANSI_NULLS ON SET ANSI_NULL_DFLT_ON ON SET ANSI_PADDING ON SET ANSI_WARNINGS ON "
         "SET CONCAT_NULL_YIELDS_NULL ON SET QUOTED_IDENTIFIER ON SET LANGUAGE us_english "
         "SET DATEFORMAT mdy SET TEXTSIZE 2147483647";
}

SqlError SqlServerDialect::error(const std::vector<Diagnostic>& diagnostics, bool opening) const {
  const auto find = [&](auto wanted) { return std::find_if(diagnostics.begin(), diagnostics.end(), wanted); };
  if (opening) {
    // A missing database comes with a login failure behind it; the database is the reason.
    const auto database = find(
        [](const Diagnostic& d) { return d.native == cannotOpenDatabase || d.native == cannotOpenDefault; });
    if (database != diagnostics.end()) {
      return {ErrorKind::LinkBroken, database->native, withoutDriverNames(database->text)};
    }
    const auto login = find([](const Diagnostic& d) { return isLoginNumber(d.native); });
    if (login != diagnostics.end()) {
      return {ErrorKind::LoginRefused, login->native, withoutDriverNames(login->text)};
    }
  }
  const bool lost = find([](const Diagnostic& d) { return isLostLink(d.native); }) != diagnostics.end();
  return OdbcDialect::error(diagnostics, opening || lost);
}

SqlError SqlServerDialect::openingError(const std::vector<Diagnostic>& diagnostics,
                                        const ConnectionParts& parts) const {
  SqlError failure = error(diagnostics, true);
  if (failure.kind() != ErrorKind::LinkBroken || failure.serverNumber() == cannotOpenDatabase ||
      failure.serverNumber() == cannotOpenDefault) {
    return failure;
  }
  const auto reason = std::find_if(diagnostics.begin(), diagnostics.end(), [](const Diagnostic& d) {
    return d.native != 0 && d.native != connectionFailed;
  });
  if (reason != diagnostics.end()) {
    failure = {ErrorKind::LinkBroken, reason->native, withoutDriverNames(reason->text)};
  } else if (parts.integrated && !diagnostics.empty() && diagnostics.back().native == connectionFailed) {
    // Without a ticket for the server FreeTDS gives up on an integrated login before it sends anything.
    return {ErrorKind::LoginRefused, notTrusted,
            "Login failed for user '" + parts.login +
                "'. Reason: Not associated with a trusted SQL Server connection."};
  }
  return {ErrorKind::LinkBroken, failure.serverNumber(),
          "Sunucuya ulaşılamıyor (" + parts.server + "): " + failure.what()};
}

std::string SqlServerDialect::columnsQuery(const TableName& table) const {
  const std::string place = table.database.empty() ? "" : bracketed(table.database) + "..";
  return "SELECT c.name, t.name, CASE WHEN (c.status & 128)<>0 THEN 1 ELSE 0 END, CASE WHEN EXISTS(SELECT 1 "
         "FROM " +
         place + "sysindexes i JOIN " + place +
         "sysindexkeys k ON k.id=i.id AND k.indid=i.indid WHERE i.id=c.id AND (i.status & 2048)<>0 AND "
         "k.colid=c.colid) THEN 1 ELSE 0 END FROM " +
         place + "syscolumns c JOIN " + place + "sysobjects o ON o.id=c.id JOIN " + place +
         "systypes t ON t.xusertype=c.xusertype WHERE o.xtype IN ('U','V') AND o.name=" +
         literal(Value(table.table)) + " ORDER BY c.colid";
}

bool SqlServerDialect::isMessage(const Diagnostic& diagnostic) const {
  // 5701 and 5703 tell of a changed database and language at every login and USE; 3621 only repeats that
  // a statement failed. PRINT and low severities come as class 01 with the server's own text.
  if (diagnostic.native == 5701 || diagnostic.native == 5703 || diagnostic.native == 3621) return false;
  return diagnostic.state.starts_with("01") && diagnostic.text.find("[SQL Server]") != std::string::npos;
}

FieldType SqlServerDialect::fieldType(const std::string& typeName, int odbcType) const {
  struct Entry {
    const char* name;
    FieldType type;
  };
  // Where the ODBC type alone would lose something; money for one is reported as a decimal.
  static constexpr Entry entries[] = {
      {"money", FieldType::Money},
      {"smallmoney", FieldType::SmallMoney},
      {"smalldatetime", FieldType::SmallDateTime},
      {"datetime", FieldType::DateTime},
      {"datetime2", FieldType::DateTime},
      {"bit", FieldType::Bit},
      {"tinyint", FieldType::TinyInt},
      {"smallint", FieldType::SmallInt},
      {"int", FieldType::Int},
      {"bigint", FieldType::BigInt},
      {"decimal", FieldType::Decimal},
      {"numeric", FieldType::Decimal},
      {"binary", FieldType::Binary},
      {"varbinary", FieldType::VarBinary},
      {"text", FieldType::Text},
      {"ntext", FieldType::NText},
      {"char", FieldType::Char},
      {"varchar", FieldType::VarChar},
      {"nchar", FieldType::NChar},
      {"nvarchar", FieldType::NVarChar},
      {"image", FieldType::VarBinary},
      {"timestamp", FieldType::Binary},
      {"real", FieldType::Real},
      {"float", FieldType::Float},
  };
  // The catalog writes "int identity" and "decimal() identity".
  const std::string name = typeName.substr(0, typeName.find_first_of(" ("));
  for (const auto& entry : entries) {
    if (sameName(entry.name, name)) return entry.type;
  }
  return OdbcDialect::fieldType(typeName, odbcType);
}

std::unique_ptr<Connection> makeSqlServerConnection() {
  return std::make_unique<OdbcConnection>(std::make_unique<SqlServerDialect>());
}

}  // namespace db
