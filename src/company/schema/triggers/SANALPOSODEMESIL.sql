CREATE TRIGGER SANALPOSODEMESIL ON CARIHAREKET FOR DELETE AS
DECLARE @Islem_ID INT
DECLARE @Islem_Tipi CHAR(30)
DECLARE @Cari_ID INT
DECLARE @Tarih DATETIME
DECLARE @Fatura_ID DATETIME
SELECT @Islem_ID=Cari_Hareket_ID, @Islem_Tipi=Islem_Tipi, @Tarih=Tarih, @Fatura_ID=Fatura_ID
  From DELETED
DELETE FROM ODEMEHAREKET
  WHERE Islem_ID=@Islem_ID AND Islem_Tipi=@Islem_Tipi AND Tarih=@Tarih
DELETE FROM ODEMEHAREKET
  WHERE Islem_ID=@Fatura_ID AND Islem_Tipi=@Islem_Tipi AND Tarih=@Tarih AND Islem_Tipi='Sanal Pos İşlemi'
