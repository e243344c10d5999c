CREATE VIEW BORDROLISTE AS
SELECT CARIKART.*, CEK.Cek_Hareket_ID, CEK.Cek_No As Cek_Senet_No, CEK.Bordro_ID As Baglanti_ID,
    CEK.Bordro_No, CEK.Islem_Tipi, CEK.Portfoy_No, CEK.Vade, CEK.O_Kod, CEK.Hesap_Ad, CEK.Banka_Hesap_No,
    CEK.Banka_Adi, CEK.Sube_Adi, CEK.Tutar, CEK.TutarListe, CEK.Borclu,' ' Kefil_Adi,CEK.Odeme_Yeri,
    CEK.Borc, CEK.Alacak, CEK.Ozel, DOVIZTANIM.Doviz_Kod, DOVIZTANIM.Doviz_Ad, CEK.KUR,
    Dovizli_Tutar=Convert(FLOAT,CASE WHEN CEK.KUR=0 THEN 0 ELSE (CEK.Tutar/CEK.KUR) END),' ' Adi_Soyadi,' '
    TCNo, ' ' Telefon, ' ' Adres
FROM CEK
LEFT JOIN CARIKART ON (CEK.Cari_ID=CARIKART.Cari_ID)
LEFT JOIN DOVIZTANIM ON DOVIZTANIM.Doviz_ID=CEK.Doviz_ID
UNION All
SELECT CARIKART.*, SENET.Cek_Hareket_ID, SENET.Senet_No As Cek_Senet_No, SENET.Bordro_ID As Baglanti_ID,
    SENET.Bordro_No, SENET.Islem_Tipi, SENET.Portfoy_No, SENET.Vade, SENET.O_Kod, SENET.Hesap_Ad,
    SENET.Banka_Hesap_No,' ',SENET.Sube_Adi, SENET.Tutar, SENET.TutarListe, SENET.Borclu, SENET.Kefil_Adi,
    SENET.Odeme_Yeri, SENET.Borc, SENET.Alacak, SENET.Ozel, DOVIZTANIM.Doviz_Kod, DOVIZTANIM.Doviz_Ad,
    SENET.KUR, Dovizli_Tutar=Convert(FLOAT,CASE WHEN SENET.KUR=0 THEN 0 ELSE (SENET.Tutar/SENET.KUR) END),
    SENET.Adi_Soyadi, SENET.TC_No, SENET.Telefon, SENET.Adres
FROM SENET
LEFT JOIN CARIKART ON (SENET.Cari_ID=CARIKART.Cari_ID)
LEFT JOIN DOVIZTANIM ON DOVIZTANIM.Doviz_ID=SENET.Doviz_ID
