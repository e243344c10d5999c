CREATE VIEW STOKHIZMETMASRAFINDIRIMLISTESI as
SELECT 'Mal' as Satir_Tipi, Stok_ID, Stok_Kod, Stok_Ad, O_Kod, O_Kod2, O_Kod3, Uretici_Firma, Grup_Kod, KDV,
    Ana_Birim, Ana_Birim_Barkod, Ana_Birim_Barkod_Tipi, Birim2, Birim2_Katsayi, Birim2_Barkod,
    Birim2_Barkod_Tipi, PosAna_Birim_Barkod, Birim3, Birim3_Katsayi, Birim3_Barkod, Birim3_Barkod_Tipi,
    ISK_Alis, ISK_Satis,KDVGrup_ID
FROM STOKKART
UNION ALL
SELECT 'Hizmet' as Satir_Tipi, ID, Kod, Ad, ' ','', '', '', '', KDV, '', '', '', '', '', '', '', '', '', '',
    '', '', '', '',0
FROM HIZMETTANIM
UNION ALL
SELECT 'Masraf' as Satir_Tipi, ID, Kod, Ad, ' ','', '', '', '', KDV, '', '', '', '', '', '', '', '', '', '',
    '', '', '', '',0
FROM MASRAFTANIM
UNION ALL
SELECT 'İndirim' as Satir_Tipi, ID, Kod, Ad, ' ','', '', '', '', 0, '', '', '', '', '', '', '', '', '', '',
    '', '', convert(char,KDV), convert(char,KDV),0
FROM INDIRIMTANIM
