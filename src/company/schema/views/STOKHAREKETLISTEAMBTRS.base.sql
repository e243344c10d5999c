CREATE VIEW STOKHAREKETLISTEAMBTRS as
SELECT Stok_Hareket_ID, Stok_HareketKart_ID, Tarih, Fis_No, Islem_No, Belge_No, Islem_Tipi, Satir_Tipi,
    Cari_ID, Cari_Kod, Cari_Unvan, Stok_ID, Stok_Kod, Stok_Ad, Ambar_No,0 As Karsi_Ambar_No, Birim, Barkod,
    Miktar, RB_Takip, Birim_Fiyat, KDV, ISK, ISK_Tutar, KDV_Tutar, Tevkifatli, Tevkif_Oran, Tevkif_KDV,
    Toplam_KDV, Tutar, Carpan, Giris, Cikis, Maliyet, Saat, Gun, AY_Index, Ay, Hafta, Siparis_Hareket_ID,
    Bag_Tur,Fatura_ID, Emir_ID, Kullanici_ID, Satici_ID, Ozel, Ozel1, Isyeri_ID, Doviz_ID, KUR,
    Dovizli_Tutar=Convert(FLOAT,CASE WHEN (Tutar<>0 AND KUR<>0) THEN(Tutar/KUR) ELSE 0 END)
FROM STOKHAREKET
UNION ALL
SELECT Stok_Hareket_ID, Stok_HareketKart_ID, Tarih, Fis_No, Islem_No, Belge_No, Islem_Tipi, Satir_Tipi,
    Cari_ID, Cari_Kod, Cari_Unvan, Stok_ID, Stok_Kod, Stok_Ad, Ambar_No,Karsi_Ambar_No, Birim, Barkod,
    Miktar, RB_Takip, Birim_Fiyat, KDV, ISK, ISK_Tutar, KDV_Tutar, Tevkifatli, Tevkif_Oran, Tevkif_KDV,
    Toplam_KDV, Tutar, Carpan, Giris, Cikis, Birim_Fiyat, Saat, Gun, AY_Index, Ay, Hafta, 0, 0, 0, 0,
    Kullanici_ID, Satici_ID, 0, Ozel1, Isyeri_ID, Doviz_ID, KUR, Dovizli_Tutar=Convert(FLOAT,CASE WHEN (
    Tutar<>0 AND KUR<>0 ) THEN ( Tutar / KUR) ELSE 0 END)
FROM AMBTRS
