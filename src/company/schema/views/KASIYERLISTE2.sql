CREATE VIEW KASIYERLISTE2 as
SELECT FATURAKART.Fatura_ID, FATURAKART.Ambar_No, FATURAKART.Tarih, FATURAKART.Saat, FATURAKART.Fis_No,
    FATURAKART.Islem_Tipi, FATURAKART.Belge_No, FATURAKART.Cari_Unvan, case when
    FATURAKART.Islem_Tipi<>'Peşin İade Faturası' THEN FATURAKART.Net_Tutar+FATURAKART.Harcanan_Puan ELSE 0
    END as Net_Tutar, FATURAKART.Ozel, KASAHAREKET.BTutar-KASAHAREKET.ATUTAR as Nakit, CARIHAREKET.ATutar as
    Kredi, KASAHAREKET.ATutar as Odeme, FATURAKART.Harcanan_Puan, FATURAKART.Kullanici_ID, FATURAKART.Gun,
    CASE WHEN FATURAKART.Islem_Tipi='Peşin Satış Faturası' then Convert(FLOAT,case when (CARIHAREKET.ATutar
    IS NULL AND (KASAHAREKET.BTutar-KASAHAREKET.ATUTAR) IS NULL) AND HEDIYECEKI.Tutar IS NULL then
    FATURAKART.Net_Tutar END) end as Veresiye, FATURAKART.AY_Index, case when
    FATURAKART.Islem_Tipi='Peşin İade Faturası' THEN FATURAKART.Net_Tutar+FATURAKART.Harcanan_Puan ELSE 0
    END as IadeTutar ,0 as NakitTahsilat, 0 as KKTahsilat, HEDIYECEKI.Tutar as H_Cek, FATURAKART.Satici_ID
FROM FATURAKART
LEFT JOIN KASAHAREKET ON (KASAHAREKET.Fatura_ID=FATURAKART.Fatura_ID)
LEFT JOIN CARIHAREKET ON (CARIHAREKET.Fatura_ID=FATURAKART.Fatura_ID)
LEFT JOIN HEDIYECEKI ON (HEDIYECEKI.Islem_ID=FATURAKART.Fatura_ID)
WHERE (FATURAKART.Islem_Tipi='Peşin Satış Faturası' OR FATURAKART.Islem_Tipi='Peşin İade Faturası' )
UNION
SELECT Kasa_Hareket_ID,0, Tarih, Saat, Fis_No, Islem_Tipi, Belge_No, Cari_Unvan, 0, Ozel, 0, 0, ATutar, 0,
    Kullanici_ID, Gun, 0,AY_Index,0 , BTutar,0,0,Satici_ID
FROM KASAHAREKET
WHERE (Islem_Tipi='Nakit Tahsilat Fişi'OR Islem_Tipi='Nakit Ödeme Fişi') AND (Fatura_ID IS NULL OR
    Fatura_ID=0)UNION
SELECT Cari_Hareket_ID,0, Tarih, Saat, Fis_No, Islem_Tipi, Belge_No, Cari_Unvan, 0, Ozel, 0, 0, 0,0,
    Kullanici_ID, Gun, 0,AY_Index,0 ,0, ATutar,0,Satici_ID
FROM CARIHAREKET
WHERE Islem_Tipi='Kredi Kartı Tahsilat' AND (Fatura_ID IS NULL OR Fatura_ID=0)
