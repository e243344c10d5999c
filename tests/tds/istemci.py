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
try:
    cursor.execute("SELECT * FROM YOK")
except pyodbc.Error as refused:
    print(refused.args[0])
