CREATE VIEW STOKSONSATIS as
SELECT *
FROM STOKHAREKET S1
WHERE S1.Satir_Tipi='Mal' AND S1.Islem_Tipi IN ('Satış İrsaliyesi' ,'Sair Çıkış') AND Tarih+Saat =(SELECT
    Max(Tarih+Saat) FROM STOKHAREKET S2 WHERE S2.Stok_ID=S1.Stok_ID AND S2.Satir_Tipi='Mal' AND
    S2.Islem_Tipi IN ('Satış İrsaliyesi' ,'Sair Çıkış'))
