CREATE VIEW STOKDETAYTOPLAMGIRIS as
SELECT SK.Stok_Kod, SK.Stok_Ad, SK. O_Kod, SK.Grup_Kod, SK.Ana_Birim, SH.Tarih,
    SH.Cari_Kod,SH.Cari_Unvan,SA.Satici_Kodu, SA.Satici_Adi,SH.Ozel, SUM(SH.Giris) as Miktar,SUM(SH.Tutar)
    as Tutar, SUM(SH.ISK_Tutar) as ISK,SUM(SH.KDV_Tutar) as KDV
FROM STOKHAREKET SH,STOKKART SK,SATICI SA
WHERE SK.Stok_Id=SH.Stok_ID AND SH.Satici_ID=SA.Satici_ID AND SH.Giris>0
GROUP BY SK.Stok_Kod, SK.Stok_Ad, SK. O_Kod, SK.Grup_Kod, SK.Ana_Birim, SH.Tarih, SH.Cari_Kod,
    SH.Cari_Unvan, SA.Satici_Kodu, SA.Satici_Adi, SH.Ozel
