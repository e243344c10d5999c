# A Python client through unixODBC: statements, parameters, a transaction, the driver's catalog functions.
import decimal
import sys

import pyodbc

connection = pyodbc.connect(
    "DRIVER=%s;SERVER=127.0.0.1;PORT=%s;TDS_Version=7.4;ClientCharset=UTF-8;UID=sa;PWD=%s;DATABASE=DENEME"
    % (sys.argv[3], sys.argv[1], sys.argv[2]))
cursor = connection.cursor()
cursor.execute("CREATE TABLE P(ID INT IDENTITY PRIMARY KEY, Ad VARCHAR(20), Tutar DECIMAL(9,2))")
connection.commit()
cursor.executemany("INSERT INTO P(Ad,Tutar) VALUES(?,?)",
                   [("Şık", decimal.Decimal("1.25")), ("iki", None)])
connection.commit()
cursor.execute("DELETE FROM P WHERE ID=?", (1,))
print(cursor.rowcount)
connection.rollback()
for row in cursor.execute("SELECT Ad, Tutar FROM P WHERE ID>? ORDER BY ID", (0,)).fetchall():
    print(*row)
print([row.column_name for row in cursor.columns(table="P")])
print([row.table_name for row in cursor.tables(table="P")])
print([row.column_name for row in cursor.primaryKeys(table="P")])
cursor.execute("SELECT ID, Ad INTO #p FROM P WHERE ID>1")
cursor.execute("INSERT INTO #p(Ad) VALUES(?)", ("üç",))
cursor.execute("BEGIN TRY INSERT INTO #p(Ad) VALUES('x') SELECT 1/0 a FROM #p END TRY "
               "BEGIN CATCH SELECT ERROR_NUMBER(), ERROR_MESSAGE(), XACT_STATE() END CATCH")
while cursor.description is None:
    cursor.nextset()
print(*cursor.fetchone())
print([row.Ad for row in cursor.execute("SELECT Ad FROM #p ORDER BY ID").fetchall()])
connection.rollback()
try:
    cursor.execute("SELECT * FROM YOK")
except pyodbc.Error as refused:
    print(refused.args[0])

cursor.execute("ALTER TABLE P ADD CONSTRAINT CK_P CHECK (Tutar > 0)")
cursor.execute("CREATE PROCEDURE Pahali @en DECIMAL(9,2), @kac INT = NULL OUTPUT AS SET NOCOUNT ON "
               "SELECT Ad FROM P WHERE Tutar >= @en SET @kac = @@ROWCOUNT RETURN 7")
connection.commit()
print([row.Ad for row in cursor.execute("{CALL Pahali(?)}", (decimal.Decimal("1"),)).fetchall()])
cursor.execute("DECLARE @r INT, @k INT EXEC @r = Pahali 1, @k OUTPUT SELECT @r, @k")
print([row.Ad for row in cursor.fetchall()])
while cursor.nextset():
    if cursor.description:
        print(*cursor.fetchone())
for row in cursor.execute("SELECT COLUMN_NAME, DATA_TYPE, NUMERIC_PRECISION FROM INFORMATION_SCHEMA.COLUMNS "
                          "WHERE TABLE_NAME = 'P' ORDER BY ORDINAL_POSITION").fetchall():
    print(*row)
print(*cursor.execute("SELECT ROUTINE_NAME, ROUTINE_TYPE FROM INFORMATION_SCHEMA.ROUTINES").fetchone())
try:
    cursor.execute("INSERT INTO P(Ad, Tutar) VALUES(?, ?)", ("eksi", decimal.Decimal("-1")))
except pyodbc.Error as refused:
    print(refused.args[0])
