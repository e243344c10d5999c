CREATE View BANKABAKIYELI as
SELECT Hesap_ID, (BTutar-ATutar) as Bakiye, convert(money,CASE WHEN ATutar=0 THEN Dovizli_Tutar ELSE
    -1*Dovizli_Tutar END) as Dovizli_Tutar2
FROM BANKAHAREKET
UNION ALL
SELECT Hesap_ID, (ATutar-BTutar) as Bakiye, convert(money,CASE WHEN BTutar=0 THEN Dovizli_Tutar ELSE
    -1*Dovizli_Tutar END) as Dovizli_Tutar2
FROM KASAHAREKET
WHERE ISNULL(Hesap_ID,0)<>0 AND Islem_Tipi<>'Banka Kredi Tahsilatı'
UNION ALL
SELECT Hesap_ID,(Borc-Alacak) as Bakiye, Convert(money,CASE WHEN KUR<>0 THEN
    (ABS(Borc-Alacak)*(Borc-Alacak)/ABS(Borc-Alacak))/KUR ELSE 0 END) as Dovizli_Tutar2
FROM CEK
WHERE Bordro_ID=(SELECT Bordro_ID FROM CEKDURUM WHERE Durum_ID=(SELECT max(Durum_ID) FROM CEKDURUM WHERE
    Cek_ID=CEK.Cek_ID)) AND (Durum='Tahsil Edildi' OR Durum='Ödendi') AND ISNULL(Hesap_ID,0)<>0
UNION ALL
SELECT Hesap_ID,(Borc-Alacak) as Bakiye, Convert(money,CASE WHEN KUR<>0 THEN
    (ABS(Borc-Alacak)*(Borc-Alacak)/ABS(Borc-Alacak))/KUR ELSE 0 END) as Dovizli_Tutar2
FROM SENET
WHERE Bordro_ID=(SELECT Bordro_ID FROM SENETDURUM WHERE Durum_ID=(SELECT max(Durum_ID) FROM SENETDURUM WHERE
    Senet_ID=SENET.Senet_ID)) AND Durum='Tahsil Edildi' AND ISNULL(Hesap_ID,0)<>0
UNION ALL
SELECT Hesap_ID, sum(ATutar-BTutar) as Bakiye, 0
FROM POSHAREKET
WHERE ISNULL(Hesap_ID,0)<>0 AND Islem_Tipi='Kredi Kartı Ödeme'
GROUP BY Hesap_ID
