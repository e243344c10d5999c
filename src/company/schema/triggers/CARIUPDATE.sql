CREATE TRIGGER CARIUPDATE ON CARIKART FOR UPDATE AS
DECLARE @Cari_Kod CHAR(26)
DECLARE @Cari_Unvan CHAR(50)
DECLARE @Cari_ID INT
SELECT @Cari_ID=Cari_ID,@Cari_Kod=Cari_Kod,@Cari_Unvan=Unvan
  FROM INSERTED
UPDATE ACILIS
  SET Cari_Kod=@Cari_Kod,Cari_Unvan=@Cari_Unvan
  WHERE Cari_ID=@Cari_ID
UPDATE KASAHAREKET
  SET Cari_Kod=@Cari_Kod, Cari_Unvan=@Cari_Unvan
  WHERE Cari_ID=@Cari_ID
UPDATE SIPARISKART
  SET Cari_Kod=@Cari_Kod, Cari_Unvan=@Cari_Unvan
  WHERE Cari_ID=@Cari_ID
UPDATE SIPARISHAREKET
  SET Cari_Kod=@Cari_Kod, Cari_Unvan=@Cari_Unvan
  WHERE Cari_ID=@Cari_ID
UPDATE STOKHAREKETKART
  SET Cari_Kod=@Cari_Kod, Cari_Unvan=@Cari_Unvan
  WHERE Cari_ID=@Cari_ID
UPDATE STOKHAREKET
  SET Cari_Kod=@Cari_Kod, Cari_Unvan=@Cari_Unvan
  WHERE Cari_ID=@Cari_ID
UPDATE BANKAHAREKET
  SET Cari_Kod=@Cari_Kod, Cari_Unvan=@Cari_Unvan
  WHERE Cari_ID=@Cari_ID
UPDATE BORDRO
  SET Cari_Kod=@Cari_Kod, Cari_Unvan=@Cari_Unvan
  WHERE Cari_ID=@Cari_ID
UPDATE CEKKART
  SET Cari_Kod=@Cari_Kod, Cari_Unvan=@Cari_Unvan
  WHERE Cari_ID=@Cari_ID
UPDATE CEKKART
  SET Borclu=Cari_Unvan
  WHERE Ciro =0 AND Cari_ID=@Cari_ID AND Sahip<>'K'
UPDATE CEK
  SET Cari_Kod=@Cari_Kod, Cari_Unvan=@Cari_Unvan
  WHERE Cari_ID=@Cari_ID
UPDATE CEK
  SET Borclu=CEKKART.Cari_Unvan
  FROM CEKKART
  WHERE CEKKART.Ciro =0 AND CEKKART.Cari_ID=@Cari_ID AND CEKKART.Sahip<>'K' AND CEKKART.Cek_ID=CEK.Cek_ID
UPDATE CEKDURUM
  SET Cari_Unvan=@Cari_Unvan
  WHERE Bordro_No<>'0' AND Bordro_ID=ANY (SELECT Bordro_ID FROM BORDRO WHERE Cari_ID=@Cari_ID)
UPDATE SENETKART
  SET Cari_Kod=@Cari_Kod, Cari_Unvan=@Cari_Unvan
  WHERE Cari_ID=@Cari_ID
UPDATE SENETKART
  SET Borclu=Cari_Unvan
  WHERE Ciro =0 AND Cari_ID=@Cari_ID AND Sahip<>'K'
UPDATE SENET
  SET Cari_Kod=@Cari_Kod, Cari_Unvan=@Cari_Unvan
  WHERE Cari_ID=@Cari_ID
UPDATE SENET
  SET Borclu=SENETKART.Cari_Unvan
  FROM SENETKART
  WHERE SENETKART.Ciro=0 AND SENETKART.Cari_ID=@Cari_ID AND SENETKART.Sahip<>'K' AND
    SENETKART.Senet_ID=SENET.Senet_ID
UPDATE SENETDURUM
  SET Cari_Unvan=@Cari_Unvan
  WHERE Bordro_No<>'0' AND Bordro_ID=ANY (SELECT Bordro_ID FROM BORDRO WHERE Cari_ID=@Cari_ID)
UPDATE CARIHAREKET
  SET Cari_Kod=@Cari_Kod, Cari_Unvan=@Cari_Unvan
  WHERE Cari_ID=@Cari_ID
UPDATE FATURAKART
  SET Cari_Kod=@Cari_Kod, Cari_Unvan=@Cari_Unvan
  WHERE Cari_ID=@Cari_ID
UPDATE FATURAHAREKET
  SET Cari_Kod=@Cari_Kod, Cari_Unvan=@Cari_Unvan
  WHERE Cari_ID=@Cari_ID
UPDATE POSHAREKET
  SET Cari_Kod=@Cari_Kod, Cari_Unvan=@Cari_Unvan
  WHERE Cari_ID=@Cari_ID
