CREATE VIEW AMBBAK AS
SELECT Stok_ID,Ambar_No,convert(FLOAT,SUM(Giris)) as G,convert(FLOAT,SUM(Cikis)) as C
FROM STOKHAREKET
WHERE Satir_Tipi='Mal'
GROUP BY Stok_ID,Ambar_No
UNION ALL
SELECT Stok_ID,Ambar_No,convert(FLOAT,SUM(Giris)) as G,convert(FLOAT,SUM(Cikis)) as C
FROM AMBTRS
GROUP BY Stok_ID,Ambar_No
