CREATE VIEW CEKSENETZIMMETI as
SELECT 'Çek' as Tip, Cek_No, Portfoy_No, Vade, Borclu, CARIKART.Unvan, Tutar,
    ISNULL(CEKPARCALITOPLAM.Toplam_Tahsil,0) as Odenen, Tutar - ISNULL(CEKPARCALITOPLAM.Toplam_Tahsil,0)
    KalanTutar, CEKPARCALITOPLAM.Tahsil_Adedi, Banka_Adi, Sube_Adi, ' ' as Kefil_Adi, CEKKART.Durum,
    Durum_Tarih, Odeme_Yeri, S1.Satici_Kodu, S1.Satici_Adi, CEKKART.O_Kod ,Z.Satici_Kodu as ZSatici_Kodu,
    Z.Satici_Adi as ZSatici_Adi,ISNULL(CEKKART.Zimmetli_ID,0) as Zimmetli_ID, CEKKART.Satici_ID,
    CEKKART.Cek_ID, CEKKART.Ozel, CARIKART.Cari_ID
FROM CARIKART,CEKKART
LEFT JOIN SATICI S1 ON (CEKKART.Satici_ID=S1.Satici_ID)
LEFT JOIN SATICI Z ON (CEKKART.Zimmetli_ID=Z.Satici_ID)
LEFT JOIN CEKPARCALITOPLAM ON (CEKKART.Cek_ID=CEKPARCALITOPLAM.Cek_ID)
WHERE CEKKART.Cari_ID=CARIKART.Cari_ID AND (CEKKART.Durum='Portföyde' OR CEKKART.Durum='Parçalı Tahsil')
UNION ALL
SELECT 'Senet' as Tip, Senet_No, Portfoy_No, Vade, Borclu, CARIKART.Unvan, Tutar,
    ISNULL(SENETPARCALITOPLAM.Toplam_Tahsil,0) as Odenen, Tutar - ISNULL(SENETPARCALITOPLAM.Toplam_Tahsil,0)
    KalanTutar, SENETPARCALITOPLAM.Tahsil_Adedi, Banka_Adi, Sube_Adi, ' ' as Kefil_Adi, SENETKART.Durum,
    Durum_Tarih, Odeme_Yeri, S1.Satici_Kodu, S1.Satici_Adi, SENETKART.O_Kod, Z.Satici_Kodu as ZSatici_Kodu,
    Z.Satici_Adi as ZSatici_Adi, ISNULL(SENETKART.Zimmetli_ID,0) as Zimmetli_ID, SENETKART.Satici_ID,
    SENETKART.Senet_ID, SENETKART.Ozel, CARIKART.Cari_ID
FROM CARIKART,SENETKART
LEFT JOIN SATICI S1 ON (SENETKART.Satici_ID=S1.Satici_ID)
LEFT JOIN SATICI Z ON (SENETKART.Zimmetli_ID=Z.Satici_ID)
LEFT JOIN SENETPARCALITOPLAM ON (SENETKART.Senet_ID=SENETPARCALITOPLAM.Senet_ID)
WHERE SENETKART.Cari_ID=CARIKART.Cari_ID AND (SENETKART.Durum='Portföyde' OR
    SENETKART.Durum='Parçalı Tahsil')
