CREATE VIEW STOKSONALIS as
SELECT *
FROM STOKHAREKET S1
WHERE S1.Satir_Tipi='Mal' AND S1.Islem_Tipi='Alış İrsaliyesi' AND Tarih+Saat =(SELECT Max(Tarih+Saat) FROM
    STOKHAREKET S2 WHERE S2.Stok_ID=S1.Stok_ID AND S2.Satir_Tipi='Mal' AND S2.Islem_Tipi='Alış İrsaliyesi')
