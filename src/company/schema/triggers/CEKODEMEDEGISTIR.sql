CREATE TRIGGER CEKODEMEDEGISTIR ON CEK FOR UPDATE AS
DECLARE @Bordro_ID INT
DECLARE @BTarih DATETIME
DECLARE @Gun INT
DECLARE @Islem_ID INT
DECLARE @Isyeri_ID INT
DECLARE @Ozel BIT
DECLARE @Islem_Tipi CHAR(30)
DECLARE @Cari_ID INT
DECLARE @Tarih DATETIME
DECLARE @Borc FLOAT
DECLARE @Alacak FLOAT
DECLARE @Kullanici_ID INT
DECLARE @Doviz_ID INT
DECLARE @KUR FLOAT
DECLARE @CNT INT
SELECT @Bordro_ID=Bordro_ID, @Islem_ID=Cek_ID, @Isyeri_ID=Isyeri_ID, @Ozel=Ozel, @Islem_Tipi=Islem_Tipi,
    @Cari_ID=ISNULL(Cari_ID,0), @Tarih=Vade, @Borc=Borc, @Alacak=Alacak, @Kullanici_ID=Kullanici_ID,
    @Doviz_ID=Doviz_ID, @KUR=KUR
  FROM INSERTED
IF @Cari_ID<>0
BEGIN
  if @Islem_Tipi='Çek Giriş' OR @Islem_Tipi='Çek Çıkış(C/H)' OR @Islem_Tipi='Çek Çıkış(Müşteriye İade)' OR
      @Islem_Tipi='Çek Giriş(Müşteriden İade)'
  BEGIN
    SELECT @Gun=DATEDIFF(D,Tarih,@Tarih),@BTarih=Tarih
      FROM BORDROKART
      WHERE Baglanti_ID=@Bordro_ID
    SELECT @CNT=COUNT(Islem_ID)
      FROM ODEMEHAREKET
      WHERE Islem_ID=@Islem_ID AND Islem_Tipi=@Islem_Tipi
    if @CNT>0
    BEGIN
      UPDATE ODEMEHAREKET
        SET Islem_ID=@Islem_ID, Isyeri_ID=@Isyeri_ID, Ozel=@Ozel, Islem_Tipi=@Islem_Tipi, Cari_ID=@Cari_ID,
          Sablon_ID=0, Tarih=@BTarih, Gun=@Gun, Yuzde=100, Borc=@Borc, Alacak=@Alacak, Durum='AÇIK',
          Kullanici_ID=@Kullanici_ID, Doviz_ID=@Doviz_ID, KUR=@KUR
        WHERE Islem_ID=@Islem_ID AND Islem_Tipi=@Islem_Tipi
    END
    ELSE
    BEGIN
      INSERT INTO ODEMEHAREKET
          (Islem_ID,Isyeri_ID,Ozel,Islem_Tipi,Cari_ID,Sablon_ID,Tarih,TAciklama,Gun,Yuzde,Borc,Alacak,Durum,Kullanici_ID,Doviz_ID,KUR)
        VALUES
          (@Islem_ID,@Isyeri_ID,@Ozel,@Islem_Tipi,@Cari_ID,0,@BTarih,'Peşin',@Gun,100,@Borc,@Alacak,'AÇIK',@Kullanici_ID,@Doviz_ID,@KUR)
    END
  END
  ELSE
  DELETE FROM ODEMEHAREKET
    WHERE Islem_ID=@Islem_ID AND Islem_Tipi=@Islem_Tipi
END
