CREATE View BANKAAYRINTI as
SELECT Hesap_ID,SUM(BTutar) as BT,SUM(ATutar) as AT
FROM BANKAHAREKET
GROUP BY Hesap_ID
UNION ALL
SELECT Hesap_ID,SUM(ATutar) as BT,SUM(BTutar) as AT
FROM KASAHAREKET
GROUP BY Hesap_ID
UNION ALL
SELECT Hesap_ID,SUM(Borc) as BT,SUM(Alacak) as AT
FROM CEK
WHERE Bordro_ID=(
    SELECT Bordro_ID
    FROM CEKDURUM
    WHERE Durum_ID=(
        SELECT max(Durum_ID)
        FROM CEKDURUM
        WHERE Cek_ID=CEK.Cek_ID)) AND (Durum='Tahsil Edildi' OR Durum='Ödendi')
GROUP BY Hesap_ID
UNION ALL
SELECT Hesap_ID,SUM(Borc) as BT,SUM(Alacak) as AT
FROM SENET
WHERE Bordro_ID=(
    SELECT Bordro_ID
    FROM SENETDURUM
    WHERE Durum_ID=(
        SELECT max(Durum_ID)
        FROM SENETDURUM
        WHERE Senet_ID=SENET.Senet_ID)) AND Durum='Tahsil Edildi'
GROUP BY Hesap_ID
