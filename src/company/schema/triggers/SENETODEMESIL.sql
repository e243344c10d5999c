CREATE TRIGGER SENETODEMESIL ON SENET FOR DELETE AS
DECLARE @Bordro_ID INT
DECLARE @BTarih DATETIME
DECLARE @Islem_ID INT
DECLARE @Islem_Tipi CHAR(30)
DECLARE @Cari_ID INT
DECLARE @Tarih DATETIME
SELECT @Bordro_ID=Bordro_ID, @Islem_ID=Senet_ID, @Islem_Tipi=Islem_Tipi, @Tarih=Vade
  FROM DELETED
if @Islem_Tipi='Senet Giriş' OR @Islem_Tipi='Senet Çıkış(C/H)' OR @Islem_Tipi='Senet Çıkış(Müşteriye İade)'
    OR @Islem_Tipi='Senet Giriş(Müşteriden İade)'
BEGIN
  SELECT @BTarih=Tarih
    FROM BORDROKART
    WHERE Baglanti_ID=@Bordro_ID
  DELETE FROM ODEMEHAREKET
    WHERE Islem_ID=@Islem_ID AND Islem_Tipi=@Islem_Tipi AND Tarih=@BTarih
END
