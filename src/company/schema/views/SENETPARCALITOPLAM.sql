CREATE VIEW SENETPARCALITOPLAM as
SELECT Senet_ID, COUNT(Senet_ID) Tahsil_Adedi, SUM(Tahsil_Tutar) as Toplam_Tahsil,SUM(Dovizli_Tutar) as
    Toplam_Dovizli_Tahsil
FROM SENETPARCALI
GROUP BY Senet_ID
