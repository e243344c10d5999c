CREATE VIEW SONSATIS AS
SELECT Cari_ID, Cari_Kod, Cari_Unvan, Stok_ID, Stok_Kod, Stok_Ad, Tarih, Birim_Fiyat, Birim, Carpan
FROM FATURAHAREKET as F1
where Islem_Tipi='Satış Faturası' and Satir_Tipi='Mal' AND Tarih+Saat=(SELECT max(Tarih+Saat) FROM
    FATURAHAREKET as F2 WHERE F2.Cari_ID=F1.Cari_ID AND F2.Stok_ID=F1.Stok_ID AND
    Islem_Tipi='Satış Faturası' AND Satir_Tipi='Mal' GROUP BY Cari_ID,Stok_ID)
