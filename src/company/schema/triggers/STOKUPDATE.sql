CREATE TRIGGER STOKUPDATE ON STOKKART FOR UPDATE AS
DECLARE @Stok_Kod CHAR(26)
DECLARE @Stok_Ad CHAR(50)
DECLARE @Stok_ID INT
SELECT @Stok_ID=Stok_ID,@Stok_Ad=Stok_Ad,@Stok_Kod=Stok_Kod
  FROM INSERTED
UPDATE STOKHAREKET
  SET Stok_Kod=@Stok_Kod,Stok_Ad=@Stok_Ad
  WHERE Stok_ID=@Stok_ID AND Satir_Tipi='Mal'UPDATE FATURAHAREKET
  SET Stok_Kod=@Stok_Kod, Stok_Ad=@Stok_Ad
  WHERE Stok_ID=@Stok_ID AND Satir_Tipi='Mal'UPDATE AMBTRS
  SET Stok_Kod=@Stok_Kod,Stok_Ad=@Stok_Ad
  WHERE Stok_ID=@Stok_ID
UPDATE ENVANTER
  SET Stok_Kod=@Stok_Kod,Stok_Ad=@Stok_Ad
  WHERE Stok_ID=@Stok_ID
UPDATE SIPARISHAREKET
  SET Stok_Kod=@Stok_Kod,Stok_Ad=@Stok_Ad
  WHERE Stok_ID=@Stok_ID AND Satir_Tipi='Mal'UPDATE RECETEKART
  SET Stok_Kod=@Stok_Kod,Stok_Ad=@Stok_Ad
  WHERE Stok_ID=@Stok_ID
UPDATE RECETEHAREKET
  SET Stok_Kod=@Stok_Kod,Stok_Ad=@Stok_Ad
  WHERE Stok_ID=@Stok_ID AND Satir_Tipi='Mal'
