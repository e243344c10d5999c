CREATE View CARIHAREKETLERVALOR As
SELECT Cari_Hareket_ID as Islem_ID,Cari_ID,Cari_Kod,Cari_Unvan,Islem_Tipi,Tarih,Fis_No,Belge_No,O_KOD,' ' as
    Aciklama,ATutar,BTutar,Kullanici_ID,Satici_ID,Doviz_ID,KUR,DATEAdd(d,Vade,Tarih) as
    Vade,Ozel,Gun,Ay_Index,Isyeri_ID
FROM ACILIS
WHERE NOT Cari_ID IS NULL
UNION ALL
SELECT Cari_Hareket_ID as
    Islem_ID,Cari_ID,Cari_Kod,Cari_Unvan,Islem_Tipi,Tarih,Fis_No,Belge_No,O_KOD,Aciklama,ATutar,BTutar,Kullanici_ID,Satici_ID,Doviz_ID,KUR,DATEAdd(d,Vade,Tarih)
    as Vade,Ozel,Gun,Ay_Index,Isyeri_ID
FROM CARIHAREKET
WHERE NOT Cari_ID IS NULL AND Islem_Tipi<>'Kredi Kartı Tahsilat'
UNION ALL
SELECT Kasa_Hareket_ID as
    Islem_ID,Cari_ID,Cari_Kod,Cari_Unvan,Islem_Tipi,Tarih,Fis_No,Belge_No,O_KOD,Aciklama,BTutar,ATutar,Kullanici_ID,Satici_ID,Doviz_ID,KUR,Tarih
    as Vade,Ozel,Gun,Ay_Index,Isyeri_ID
FROM KASAHAREKET
WHERE NOT Cari_ID IS NULL
UNION ALL
SELECT Hareket_ID as
    Islem_ID,Cari_ID,Cari_Kod,Cari_Unvan,Islem_Tipi,Tarih,Fis_No,Belge_No,O_KOD,Aciklama,BTutar,ATutar,Kullanici_ID,Satici_ID,Doviz_ID,KUR,Tarih
    as Vade,Ozel,Gun,Ay_Index,Isyeri_ID
FROM BANKAHAREKET
WHERE NOT Cari_ID IS NULL
UNION ALL
SELECT Fatura_ID As
    Islem_ID,Cari_ID,Cari_Kod,Cari_Unvan,Islem_Tipi,Tarih,Fis_No,Belge_No,O_KOD,Aciklama,ATutar,BTutar,Kullanici_ID,Satici_ID,Doviz_ID,KUR,DATEAdd(d,Vade,Tarih)
    as Vade,Ozel,Gun,Ay_Index,Isyeri_ID
FROM FATURAKART
WHERE NOT Cari_ID IS NULL
UNION ALL
SELECT Cek_ID as Islem_ID, CEK.Cari_ID, CEK.Cari_Kod, CEK.Cari_Unvan, CEK.Islem_Tipi, CEK.Vade,
    CEK.Portfoy_No, BORDRO.Belge_No, BORDRO.O_KOD, BORDRO.Aciklama, CEK.Alacak, CEK.Borc, CEK.Kullanici_ID,
    CEK.Satici_ID, CEK.Doviz_ID, CEK.KUR, CEK.Vade, CEK.Ozel, CEK.Gun, CEK.Ay_Index,BORDRO.Isyeri_ID
FROM CEK,BORDRO
WHERE NOT BORDRO.Cari_ID IS NULL AND CEK.Bordro_ID=BORDRO.Bordro_ID
UNION ALL
SELECT Senet_ID as Islem_ID, SENET.Cari_ID, SENET.Cari_Kod, SENET.Cari_Unvan, SENET.Islem_Tipi, SENET.Vade,
    SENET.Portfoy_No, BORDRO.Belge_No, BORDRO.O_KOD, BORDRO.Aciklama, SENET.Alacak, SENET.Borc,
    SENET.Kullanici_ID, SENET.Satici_ID, SENET.Doviz_ID, SENET.KUR, SENET.Vade, SENET.Ozel, SENET.Gun ,
    SENET.Ay_Index,BORDRO.Isyeri_ID
FROM SENET,BORDRO
WHERE NOT BORDRO.Cari_ID IS NULL AND SENET.Bordro_ID=BORDRO.Bordro_ID
UNION ALL
SELECT PosHareket_ID As
    Islem_ID,Cari_ID,Cari_Kod,Cari_Unvan,Islem_Tipi,Islem_Tarih,Fis_No,Belge_No,O_KOD,Aciklama,Tutar,0,Kullanici_ID,Satici_ID,1,0,Hesaba_Aktarim_Tarih
    as Vade,Ozel,Gun,Ay_Index,Isyeri_ID
FROM POSHAREKET
WHERE NOT Cari_ID IS NULL
