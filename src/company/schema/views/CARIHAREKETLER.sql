CREATE View CARIHAREKETLER As
SELECT CariHareket_Fis_ID as
    Islem_ID,Cari_ID,Cari_Kod,Cari_Unvan,Islem_Tipi,Tarih,Fis_No,Belge_No,O_KOD,Aciklama,ATutar,BTutar,Kullanici_ID,Satici_ID,Doviz_ID,KUR,DATEAdd(d,Vade,Tarih)
    as Vade,Ozel,Dovizli_Tutar, Convert(FLOAT,case when (Dovizli_Alacak>Dovizli_Borc) then -1*Dovizli_Alacak
    else Dovizli_Borc end) as Dovizli_Tutar2,Gun,Ay_Index,Hafta,Isyeri_ID, case when
    len(convert(varchar,DATEPART(Hh,Saat)))=1 then '0' + convert(varchar,DATEPART(Hh,Saat)) else
    convert(varchar,DATEPART(Hh,Saat))END + case when len(convert(varchar,DATEPART(Mi,Saat)))=1 then '0' +
    convert(varchar,DATEPART(Mi,Saat)) else convert(varchar,DATEPART(Mi,Saat))END AS SADK,Saat
FROM ACILIS
WHERE Cari_ID>0 AND NOT Cari_ID IS NULL
UNION ALL
SELECT Cari_Hareket_ID as
    Islem_ID,Cari_ID,Cari_Kod,Cari_Unvan,Islem_Tipi,Tarih,Fis_No,Belge_No,O_KOD,Aciklama,ATutar,BTutar,Kullanici_ID,Satici_ID,Doviz_ID,KUR,DATEAdd(d,Vade,Tarih)
    as Vade,Ozel,Dovizli_Tutar, Convert(FLOAT,case when (Btutar>Atutar) then Dovizli_Tutar else
    -1*Dovizli_Tutar end) as Dovizli_Tutar2,Gun,Ay_Index,Hafta, Isyeri_ID, case when
    len(convert(varchar,DATEPART(Hh,Saat)))=1 then '0' + convert(varchar,DATEPART(Hh,Saat)) else
    convert(varchar,DATEPART(Hh,Saat))END + case when len(convert(varchar,DATEPART(Mi,Saat)))=1 then '0' +
    convert(varchar,DATEPART(Mi,Saat)) else convert(varchar,DATEPART(Mi,Saat))END,Saat
FROM CARIHAREKET
WHERE Cari_ID>0 AND NOT Cari_ID IS NULL
UNION ALL
SELECT Kasa_Hareket_ID as
    Islem_ID,Cari_ID,Cari_Kod,Cari_Unvan,Islem_Tipi,Tarih,Fis_No,Belge_No,O_KOD,Aciklama,BTutar,ATutar,Kullanici_ID,Satici_ID,Doviz_ID,KUR,Tarih
    as Vade,Ozel,Dovizli_Tutar, Convert(FLOAT,case when (Btutar<Atutar) then Dovizli_Tutar else
    -1*Dovizli_Tutar end) as Dovizli_Tutar2,Gun,Ay_Index,Hafta,Isyeri_ID, case when
    len(convert(varchar,DATEPART(Hh,Saat)))=1 then '0' + convert(varchar,DATEPART(Hh,Saat)) else
    convert(varchar,DATEPART(Hh,Saat))END + case when len(convert(varchar,DATEPART(Mi,Saat)))=1 then '0' +
    convert(varchar,DATEPART(Mi,Saat)) else convert(varchar,DATEPART(Mi,Saat))END,Saat
FROM KASAHAREKET
WHERE Cari_ID>0 AND NOT Cari_ID IS NULL AND (MasHizHar_ID =0 OR MasHizHar_ID IS NULL)
UNION ALL
SELECT Hareket_ID as
    Islem_ID,Cari_ID,Cari_Kod,Cari_Unvan,Islem_Tipi,Tarih,Fis_No,Belge_No,O_KOD,Aciklama,BTutar,case when
    ISNULL(HavaleTut,0)>0 then ATutar-(Atutar-HavaleTut) else ATutar end as
    ATutar,Kullanici_ID,Satici_ID,Doviz_ID,KUR,Tarih as Vade,Ozel,Dovizli_Tutar, Convert(FLOAT,case when
    (Btutar<Atutar) then Dovizli_Tutar else -1*Dovizli_Tutar end) as
    Dovizli_Tutar2,Gun,Ay_Index,Hafta,Isyeri_ID, case when len(convert(varchar,DATEPART(Hh,Saat)))=1 then
    '0' + convert(varchar,DATEPART(Hh,Saat)) else convert(varchar,DATEPART(Hh,Saat))END + case when
    len(convert(varchar,DATEPART(Mi,Saat)))=1 then '0' + convert(varchar,DATEPART(Mi,Saat)) else
    convert(varchar,DATEPART(Mi,Saat))END,Saat
FROM BANKAHAREKET
WHERE Cari_ID>0 AND NOT Cari_ID IS NULL AND (MasHizHar_ID =0 OR MasHizHar_ID IS NULL)
UNION ALL
SELECT Fatura_ID As
    Islem_ID,Cari_ID,Cari_Kod,Cari_Unvan,Islem_Tipi,Tarih,Fis_No,Belge_No,O_KOD,Aciklama,ATutar,BTutar,Kullanici_ID,Satici_ID,Doviz_ID,KUR,DATEAdd(d,Vade,Tarih)
    as Vade,Ozel,Dovizli_Tutar, Convert(FLOAT,case when (Btutar>Atutar) then Dovizli_Tutar else
    -1*Dovizli_Tutar end) as Dovizli_Tutar2,Gun,Ay_Index,Hafta,Isyeri_ID, case when
    len(convert(varchar,DATEPART(Hh,Saat)))=1 then '0' + convert(varchar,DATEPART(Hh,Saat)) else
    convert(varchar,DATEPART(Hh,Saat))END + case when len(convert(varchar,DATEPART(Mi,Saat)))=1 then '0' +
    convert(varchar,DATEPART(Mi,Saat)) else convert(varchar,DATEPART(Mi,Saat))END,Saat
FROM FATURAKART
WHERE Cari_ID>0 AND NOT Cari_ID IS NULL AND (Iptal=0 OR Iptal IS NULL)
UNION ALL
SELECT Bordro_ID as
    Islem_ID,Cari_ID,Cari_Kod,Cari_Unvan,Islem_Tipi,Tarih,Bordro_No,Belge_No,O_KOD,Aciklama,Alacak,Borc,Kullanici_ID,Satici_ID,Doviz_ID,KUR,Ortalama_Vade,Ozel,Dovizli_Tutar,
    Convert(FLOAT,case when (Borc>Alacak) then Dovizli_Tutar else -1*Dovizli_Tutar end) as
    Dovizli_Tutar2,Gun,Ay_Index,Hafta,Isyeri_ID, case when len(convert(varchar,DATEPART(Hh,Saat)))=1 then
    '0' + convert(varchar,DATEPART(Hh,Saat)) else convert(varchar,DATEPART(Hh,Saat))END + case when
    len(convert(varchar,DATEPART(Mi,Saat)))=1 then '0' + convert(varchar,DATEPART(Mi,Saat)) else
    convert(varchar,DATEPART(Mi,Saat))END,Saat
FROM BORDRO
WHERE Cari_ID>0 AND NOT Cari_ID IS NULL
UNION ALL
SELECT PosHareket_ID as
    Islem_ID,Cari_ID,Cari_Kod,Cari_Unvan,Islem_Tipi,Islem_Tarih,Fis_No,Belge_No,O_KOD,Aciklama,Tutar,0,Kullanici_ID,Satici_ID,1,0,Islem_Tarih,Ozel,0,
    0 as Dovizli_Tutar2,Gun,Ay_Index,Hafta,Isyeri_ID, case when len(convert(varchar,DATEPART(Hh,Saat)))=1
    then '0' + convert(varchar,DATEPART(Hh,Saat)) else convert(varchar,DATEPART(Hh,Saat))END + case when
    len(convert(varchar,DATEPART(Mi,Saat)))=1 then '0' + convert(varchar,DATEPART(Mi,Saat)) else
    convert(varchar,DATEPART(Mi,Saat))END,Saat
FROM POSHAREKET
WHERE (Islem_Tipi<>'Kredi Kartı Tahsilat'AND Islem_Tipi<>'Kredi Kartı Ödeme') AND Cari_ID>0 AND NOT Cari_ID
    IS NULL AND (MasHizHar_ID =0 OR MasHizHar_ID IS NULL)
