CREATE VIEW CEKPARCALITOPLAM as
SELECT Cek_ID, COUNT(Cek_ID) Tahsil_Adedi, SUM(Tahsil_Tutar) as Toplam_Tahsil,SUM(Dovizli_Tutar) as
    Toplam_Dovizli_Tahsil
FROM CEKPARCALI
GROUP BY Cek_ID
