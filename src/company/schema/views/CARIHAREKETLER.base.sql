CREATE View CARIHAREKETLER As
SELECT Cari_Hareket_ID as
    Islem_ID,Cari_ID,Cari_Kod,Cari_Unvan,Islem_Tipi,Tarih,Fis_No,Belge_No,O_KOD,Aciklama,ATutar,BTutar,Kullanici_ID,Satici_ID,Doviz_ID,KUR,DATEAdd(d,Vade,Tarih)
    as Vade,Ozel,Dovizli_Tutar, Convert(FLOAT,case when (Dovizli_Alacak>Dovizli_Borc) then -1*Dovizli_Alacak
    else Dovizli_Borc end) as Dovizli_Tutar2,Gun,Ay_Index,Hafta,Isyeri_ID
FROM ACILIS
WHERE Cari_ID>0 AND NOT Cari_ID IS NULL
UNION ALL
SELECT Cari_Hareket_ID as
    Islem_ID,Cari_ID,Cari_Kod,Cari_Unvan,Islem_Tipi,Tarih,Fis_No,Belge_No,O_KOD,Aciklama,ATutar,BTutar,Kullanici_ID,Satici_ID,Doviz_ID,KUR,DATEAdd(d,Vade,Tarih)
    as Vade,Ozel,Dovizli_Tutar, Convert(FLOAT,case when (Btutar>Atutar) then Dovizli_Tutar else
    -1*Dovizli_Tutar end) as Dovizli_Tutar2,Gun,Ay_Index,Hafta,Isyeri_ID
FROM CARIHAREKET
WHERE Cari_ID>0 AND NOT Cari_ID IS NULL
UNION ALL
SELECT Kasa_Hareket_ID as
    Islem_ID,Cari_ID,Cari_Kod,Cari_Unvan,Islem_Tipi,Tarih,Fis_No,Belge_No,O_KOD,Aciklama,BTutar,ATutar,Kullanici_ID,Satici_ID,Doviz_ID,KUR,Tarih
    as Vade,Ozel,Dovizli_Tutar, Convert(FLOAT,case when (Btutar<Atutar) then Dovizli_Tutar else
    -1*Dovizli_Tutar end) as Dovizli_Tutar2,Gun,Ay_Index,Hafta,Isyeri_ID
FROM KASAHAREKET
WHERE Cari_ID>0 AND NOT Cari_ID IS NULL
UNION ALL
SELECT Hareket_ID as
    Islem_ID,Cari_ID,Cari_Kod,Cari_Unvan,Islem_Tipi,Tarih,Fis_No,Belge_No,O_KOD,Aciklama,BTutar,ATutar,Kullanici_ID,Satici_ID,Doviz_ID,KUR,Tarih
    as Vade,Ozel,Dovizli_Tutar, Convert(FLOAT,case when (Btutar<Atutar) then Dovizli_Tutar else
    -1*Dovizli_Tutar end) as Dovizli_Tutar2,Gun,Ay_Index,Hafta,Isyeri_ID
FROM BANKAHAREKET
WHERE Cari_ID>0 AND NOT Cari_ID IS NULL
UNION ALL
SELECT Fatura_ID As
    Islem_ID,Cari_ID,Cari_Kod,Cari_Unvan,Islem_Tipi,Tarih,Fis_No,Belge_No,O_KOD,Aciklama,ATutar,BTutar,Kullanici_ID,Satici_ID,Doviz_ID,KUR,DATEAdd(d,Vade,Tarih)
    as Vade,Ozel,Dovizli_Tutar, Convert(FLOAT,case when (Btutar>Atutar) then Dovizli_Tutar else
    -1*Dovizli_Tutar end) as Dovizli_Tutar2,Gun,Ay_Index,Hafta,Isyeri_ID
FROM FATURAKART
WHERE Cari_ID>0 AND NOT Cari_ID IS NULL
UNION ALL
SELECT Bordro_ID as
    Islem_ID,Cari_ID,Cari_Kod,Cari_Unvan,Islem_Tipi,Tarih,Bordro_No,Belge_No,O_KOD,Aciklama,Alacak,Borc,Kullanici_ID,Satici_ID,Doviz_ID,KUR,Ortalama_Vade,Ozel,Dovizli_Tutar,
    Convert(FLOAT,case when (Borc>Alacak) then Dovizli_Tutar else -1*Dovizli_Tutar end) as
    Dovizli_Tutar2,Gun,Ay_Index,Hafta,Isyeri_ID
FROM BORDRO
WHERE Cari_ID>0 AND NOT Cari_ID IS NULL
UNION ALL
SELECT PosHareket_ID as
    Islem_ID,Cari_ID,Cari_Kod,Cari_Unvan,Islem_Tipi,Islem_Tarih,Fis_No,Belge_No,O_KOD,Aciklama,Tutar,0,Kullanici_ID,Satici_ID,1,0,Islem_Tarih,Ozel,0,
    0 as Dovizli_Tutar2,Gun,Ay_Index,Hafta,Isyeri_ID
FROM POSHAREKET
WHERE Islem_Tipi<>'Kredi Kartı Tahsilat' AND Cari_ID>0 AND NOT Cari_ID IS NULL
