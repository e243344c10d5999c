CREATE VIEW KASIYERLISTE as
SELECT FATURAKART.Fatura_ID, FATURAKART.Tarih, FATURAKART.Saat, FATURAKART.Fis_No, FATURAKART.Islem_Tipi,
    FATURAKART.Belge_No, FATURAKART.Cari_Unvan, CASE WHEN FATURAKART.Islem_Tipi='Peşin Satış Faturası' THEN
    FATURAKART.Net_Tutar+FATURAKART.Harcanan_Puan ELSE FATURAKART.Net_Tutar*-1 END as Net_Tutar,
    FATURAKART.Ozel, KASAHAREKET.BTutar-KASAHAREKET.ATUTAR as Nakit, CARIHAREKET.ATutar as Kredi,
    KASAHAREKET.ATutar as Odeme, FATURAKART.Harcanan_Puan, FATURAKART.Kullanici_ID, FATURAKART.Gun, CASE
    WHEN FATURAKART.Islem_Tipi='Peşin Satış Faturası'then Convert(FLOAT,FATURAKART.Net_Tutar
    -(isnull(CARIHAREKET.ATutar,0) + (isnull(HEDIYECEKI.Tutar,0)*(-1))
    +(KASAHAREKET.BTutar-KASAHAREKET.ATUTAR) )) end as Veresiye, FATURAKART.AY_Index, HEDIYECEKI.Tutar*(-1)
    as H_Cek,FATURAKART.Aciklama, FATURAKART.Adisyon,0 as Kasa_ID, FATURAKART.Satici_ID, FATURAKART.DepMik
FROM FATURAKART
LEFT JOIN KASAHAREKET ON (KASAHAREKET.Fatura_ID=FATURAKART.Fatura_ID)
LEFT JOIN CARIHAREKET ON (CARIHAREKET.Fatura_ID=FATURAKART.Fatura_ID)LEFT JOIN HEDIYECEKI ON
    (HEDIYECEKI.Islem_ID=FATURAKART.Fatura_ID)WHERE (FATURAKART.Islem_Tipi='Peşin Satış Faturası' OR
    FATURAKART.Islem_Tipi='Peşin İade Faturası' )
UNION
SELECT Kasa_Hareket_ID, Tarih, Saat, Fis_No, Islem_Tipi, Belge_No, CASE WHEN Cari_Unvan IS NULL THEN
    Aciklama ELSE Cari_Unvan END as Cari_Unvan, 0, Ozel, BTutar, 0, ATutar, 0, Kullanici_ID, Gun,
    0,AY_Index,0,'',0,Kasa_ID,Satici_ID,0
FROM KASAHAREKET
WHERE (Islem_Tipi='Nakit Tahsilat Fişi'OR Islem_Tipi='Nakit Ödeme Fişi' OR Islem_Tipi='Kasa Virman Fişi')
    AND (Fatura_ID IS NULL OR Fatura_ID=0)
UNION
SELECT Cari_Hareket_ID, Tarih, Saat, Fis_No, Islem_Tipi, Belge_No, Cari_Unvan, 0, Ozel, 0, ATutar, 0,0,
    Kullanici_ID, Gun, 0,AY_Index,0,'',0 ,0,Satici_ID,0
FROM CARIHAREKET
WHERE Islem_Tipi='Kredi Kartı Tahsilat' AND (Fatura_ID IS NULL OR Fatura_ID=0)
