CREATE VIEW CARIHAREKETLISTEFRM as
SELECT Cari_Hareket_ID, Fis_No, Tarih, Belge_No, Islem_Tipi, Cari_Unvan, Btutar, Atutar, Cari_ID, Ozel,
    Dovizli_Tutar, Kullanici_ID, Gun, Ay_Index, Ent_Durum, Isyeri_ID
FROM CARIHAREKET
UNION
SELECT PosHareket_ID, Fis_No, Islem_Tarih, Belge_No, Islem_Tipi, Cari_Unvan, 0, Tutar, Cari_ID, Ozel, 0
    ,Kullanici_ID, Gun, Ay_Index,Ent_Durum, Isyeri_ID
FROM POSHAREKET
WHERE Satis_ID is NULL OR Satis_ID=0
