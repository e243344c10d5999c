CREATE VIEW CARITOPLAM as
SELECT Cari_ID,Sum(Dovizli_Tutar2) as DovizBakiye, SUM(BTutar-ATutar) as Bakiye
FROM CARIHAREKETLER
GROUP BY Cari_ID
UNION
SELECT Cari_ID, Sum(DovizBakiye) as DovizBakiye, SUM(Bakiye) as Bakiye
FROM CARIBAKIYESIZ
GROUP BY Cari_ID
