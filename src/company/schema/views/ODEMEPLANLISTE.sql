CREATE VIEW ODEMEPLANLISTE AS
SELECT CK.Cari_ID, CK.Cari_Kod, CK.Unvan, CK.Yetkili, CK.Tel1, CK.Tel2, CK.Fax, CK.Gsm, CK.Email, CH.Tarih
    as Islem_Tarih, CH.Islem_Tipi, CH.Aciklama, CH.Belge_No, CH.Fis_No, CH.O_Kod, CH.BTutar, CH.ATutar,
    OH.Tarih as Vade, OH.Odeme_ID, OH.TAciklama, OH.Borc, OH.Alacak, STC.Satici_Kodu, STC.Satici_Adi
FROM CARIKART CK,CARIHAREKETLERVALOR CH,SATICI STC,ODEMEHAREKET OH
WHERE CK.Cari_ID=CH.Cari_ID AND (CH.Islem_ID=OH.Islem_ID AND CH.Islem_Tipi=OH.Islem_Tipi) AND CH.Satici_ID=
    STC.Satici_ID
