CREATE VIEW GUNLUKTRANSFER as
SELECT TML.Stok_Hareket_ID, TML.Stok_HareketKart_ID, TML.Tarih, TML.Saat, TML.Fis_No, TML.Islem_No,
    TML.Islem_Tipi, TML.Stok_ID, TML.Stok_Kod, TML.Stok_Ad, TML.Miktar, TML.Birim_Fiyat, TML.ISK,
    TML.ISK_Tutar, TML.KDV, TML.KDV_Tutar, TML.Tutar, TML.Carpan, TML.Giris, TML.Cikis, TML.Ambar_No,
    (SELECT Ambar_No FROM AMBTRS as R WHERE TML.Fis_No=R.Fis_No AND TML.Stok_ID=R.Stok_ID AND
    TML.Islem_No=R.Islem_No AND TML.Stok_Hareket_ID<>R.Stok_Hareket_ID) as TersAmbar, TML.Cikis as
    TersGiris, TML.Giris as TersCikis, TML.Gun, TML.AY_Index, TML.AY, TML.Hafta, TML.Kullanici_ID, TML.Ozel,
    TML.Doviz_ID, TML.KUR, TML.Isyeri_ID
FROM AMBTRS as TML
