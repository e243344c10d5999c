CREATE View BB as
SELECT Hesap_ID,SUM(Bakiye) as Bakiye,SUM(Dovizli_Tutar2) as DovizBakiye
FROM BANKABAKIYELI
GROUP BY Hesap_ID
