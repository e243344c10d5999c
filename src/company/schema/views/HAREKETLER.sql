CREATE VIEW HAREKETLER as
SELECT Siparis_ID as ID, Tarih, Fis_No, Belge_No, Islem_Tipi, Cari_ID, Cari_Kod, Cari_Unvan, O_Kod,
    Ambar_No, Aciklama, Burut_Tutar, Indirim_Toplam, Ara_Toplam, KDV_Toplam, KDV_Dahil, Net_Tutar, ATutar,
    BTutar, Vade, Saat, Gun, AY_Index, Ay, Hafta, Kullanici_ID, Satici_ID, Ozel, Doviz_ID, KUR,
    Dovizli_Tutar, Isyeri_ID, YR_Kullanici, YR_Tarih, YR_Saat, Deg_Kullanici, Deg_Tarih, Deg_Saat
FROM SIPARISKART
UNION ALL
SELECT FATURAKART.Fatura_ID, FATURAKART.Tarih, FATURAKART.Fis_No, FATURAKART.Belge_No,
    FATURAKART.Islem_Tipi, FATURAKART.Cari_ID, FATURAKART.Cari_Kod, FATURAKART.Cari_Unvan, FATURAKART.O_Kod,
    FATURAKART.Ambar_No, FATURAKART.Aciklama, FATURAKART.Burut_Tutar, FATURAKART.Indirim_Toplam,
    FATURAKART.Ara_Toplam, FATURAKART.Toplam_KDV, FATURAKART.KDV_Dahil, FATURAKART.Net_Tutar,
    FATURAKART.ATutar, FATURAKART.BTutar, FATURAKART.Vade, FATURAKART.Saat, FATURAKART.Gun,
    FATURAKART.AY_Index, FATURAKART.Ay, FATURAKART.Hafta, FATURAKART.Kullanici_ID, FATURAKART.Satici_ID,
    FATURAKART.Ozel, FATURAKART.Doviz_ID, FATURAKART.KUR, FATURAKART.Dovizli_Tutar, FATURAKART.Isyeri_ID,
    FATURAKART.YR_Kullanici, FATURAKART.YR_Tarih, FATURAKART.YR_Saat, FATURAKART.Deg_Kullanici,
    FATURAKART.Deg_Tarih, FATURAKART.Deg_Saat
FROM FATURAKART,SIPARISBAGLANTI
where FATURAKART.Fatura_ID<>SIPARISBAGLANTI.Islem_ID
GROUP BY FATURAKART.Fatura_ID, FATURAKART.Tarih, FATURAKART.Fis_No, FATURAKART.Belge_No,
    FATURAKART.Islem_Tipi, FATURAKART.Cari_ID, FATURAKART.Cari_Kod, FATURAKART.Cari_Unvan, FATURAKART.O_Kod,
    FATURAKART.Ambar_No, FATURAKART.Aciklama, FATURAKART.Burut_Tutar, FATURAKART.Indirim_Toplam,
    FATURAKART.Ara_Toplam, FATURAKART.Toplam_KDV, FATURAKART.KDV_Dahil, FATURAKART.Net_Tutar,
    FATURAKART.ATutar, FATURAKART.BTutar, FATURAKART.Vade, FATURAKART.Saat, FATURAKART.Gun,
    FATURAKART.AY_Index, FATURAKART.Ay, FATURAKART.Hafta, FATURAKART.Kullanici_ID, FATURAKART.Satici_ID,
    FATURAKART.Ozel, FATURAKART.Doviz_ID, FATURAKART.KUR, FATURAKART.Dovizli_Tutar, FATURAKART.Isyeri_ID,
    FATURAKART.YR_Kullanici, FATURAKART.YR_Tarih, FATURAKART.YR_Saat, FATURAKART.Deg_Kullanici,
    FATURAKART.Deg_Tarih, FATURAKART.Deg_Saat
UNION ALL
SELECT Stok_HareketKart_ID, Tarih, Fis_No, Belge_No, Islem_Tipi, Cari_ID, Cari_Kod, Cari_Unvan, O_Kod,
    Ambar_No, Aciklama, Burut_Tutar, Indirim_Toplam, Ara_Toplam, Toplam_KDV, KDV_Dahil, Net_Tutar, ATutar,
    BTutar, Vade, Saat, Gun, AY_Index, Ay, Hafta, Kullanici_ID, Satici_ID, Ozel, Doviz_ID, KUR,
    Dovizli_Tutar, Isyeri_ID, YR_Kullanici, YR_Tarih, YR_Saat, Deg_Kullanici, Deg_Tarih, Deg_Saat
FROM STOKHAREKETKART
WHERE Fatura_ID=0 or Fatura_ID IS NULL
UNION ALL
SELECT Kasa_Hareket_ID, Tarih, Fis_No, Belge_No, Islem_Tipi, Cari_ID, Cari_Kod, Cari_Unvan, O_Kod, 0,
    Aciklama, 0, 0, 0, 0, 0, CASE WHEN Atutar>0 then Atutar else Btutar END, Atutar, Btutar, 0, Saat, Gun,
    AY_Index, Ay, Hafta, Kullanici_ID, Satici_ID, Ozel, Doviz_ID, KUR, Dovizli_Tutar, Isyeri_ID,
    YR_Kullanici, YR_Tarih, YR_Saat, Deg_Kullanici, Deg_Tarih, Deg_Saat
FROM KASAHAREKET
UNION ALL
SELECT Cari_Hareket_ID, Tarih, Fis_No, Belge_No, Islem_Tipi, Cari_ID, Cari_Kod, Cari_Unvan, O_Kod, 0,
    Aciklama, 0, 0, 0, 0, 0, CASE WHEN Atutar>0 then Atutar else Btutar END, ATutar, BTutar, Vade, Saat,
    Gun, AY_Index, Ay, Hafta, Kullanici_ID, Satici_ID, Ozel, Doviz_ID, KUR, Dovizli_Tutar, Isyeri_ID,
    YR_Kullanici, YR_Tarih, YR_Saat, Deg_Kullanici, Deg_Tarih, Deg_Saat
FROM CARIHAREKET
UNION ALL
SELECT Bordro_ID, Tarih, Bordro_No, Belge_No, Islem_Tipi, Cari_ID, Cari_Kod, Cari_Unvan, O_Kod, 0, Aciklama,
    0, 0, 0, 0, 0, Toplam_Tutar, Borc, Alacak, Ortalama_Vade, Saat, Gun, AY_Index, Ay, Hafta, Kullanici_ID,
    Satici_ID, Ozel, Doviz_ID, KUR, Dovizli_Tutar, Isyeri_ID, YR_Kullanici, YR_Tarih, YR_Saat,
    Deg_Kullanici, Deg_Tarih, Deg_Saat
FROM BORDRO
UNION ALL
SELECT Hareket_ID, Tarih, Fis_No, Belge_No, Islem_Tipi, Cari_ID, Cari_Kod, Cari_Unvan, O_Kod, 0, Aciklama,
    0, 0, 0, 0, 0, CASE WHEN Atutar>0 then Atutar else Btutar END, BTutar, ATutar, 0, Saat, Gun, AY_Index,
    Ay, Hafta, Kullanici_ID, Satici_ID, Ozel, Doviz_ID, KUR, Dovizli_Tutar, Isyeri_ID, YR_Kullanici,
    YR_Tarih, YR_Saat, Deg_Kullanici, Deg_Tarih, Deg_Saat
FROM BANKAHAREKET
