CREATE VIEW ODEMETAHSILATLISTESI AS
SELECT CK.Cari_ID, CK.Cari_Kod, CK.Unvan, CK.Yetkili, CK.Tel1, CK.Tel2, CK.Fax, CK.Gsm, CK.Email, CH.Tarih
    as Islem_Tarih, CH.Islem_Tipi, CH.Belge_No, CH.Fis_No, CH.O_Kod, CH.BTutar, CH.ATutar, OH.Tarih as Vade,
    OH.Odeme_ID, OH.Borc, OH.Alacak, STC.Satici_Kodu, STC.Satici_Adi, ABS(OH.Borc - OH.Alacak) -
    ISNULL(SUM(OK.Kapanan_Tutar),0) as Kalan
FROM CARIKART CK,CARIHAREKETLERVALOR CH,SATICI STC,ODEMEHAREKET OH
LEFT JOIN ODEMEKAPATMA OK ON (OH.Odeme_ID=OK.Borc_ID OR OH.Odeme_ID=OK.Alacak_ID)
WHERE CK.Cari_ID = CH.Cari_ID And (CH.Islem_ID = OH.Islem_ID And CH.Islem_Tipi = OH.Islem_Tipi) And
    CH.Satici_ID = STC.Satici_ID
GROUP BY CK.Cari_ID, CK.Cari_Kod, CK.Unvan, CK.Yetkili, CK.Tel1, CK.Tel2, CK.Fax, CK.Gsm, CK.Email,
    CH.Tarih, CH.Islem_Tipi, CH.Belge_No, CH.Fis_No, CH.O_Kod, CH.BTutar, CH.ATutar, OH.Tarih, OH.Odeme_ID,
    OH.Borc, OH.Alacak, STC.Satici_Kodu, STC.Satici_Adi
