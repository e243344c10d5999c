CREATE VIEW STOKDETAYTOPLAM as
SELECT SK.Stok_Kod, SK.Stok_Ad, SK. O_Kod, SK.Grup_Kod, SK.Ana_Birim, SH.Tarih, SH.Cari_Kod, SH.Cari_Unvan,
    SA.Satici_Kodu, SA.Satici_Adi, SH.Ozel, SUM((SH.Giris-SH.Cikis) * SH.Carpan) as Miktar, SUM(SH.Tutar *
    (SH.Giris - SH.Cikis)/ABS(SH.Giris - SH.Cikis)) as Tutar, SUM(SH.ISK_Tutar * (SH.Giris -
    SH.Cikis)/ABS(SH.Giris - SH.Cikis)) as ISK, SUM(SH.KDV_Tutar * (SH.Giris - SH.Cikis)/ABS(SH.Giris -
    SH.Cikis)) as KDV
FROM STOKHAREKET SH,STOKKART SK,SATICI SA
WHERE SK.Stok_Id=SH.Stok_ID AND SH.Satici_ID=SA.Satici_ID
GROUP BY SK.Stok_Kod, SK.Stok_Ad, SK. O_Kod, SK.Grup_Kod, SK.Ana_Birim, SH.Tarih, SH.Cari_Kod,
    SH.Cari_Unvan, SA.Satici_Kodu, SA.Satici_Adi, SH.Ozel
