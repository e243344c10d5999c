CREATE TRIGGER POSODEMEDEGISTIR ON POSHAREKET FOR UPDATE AS
DECLARE @Isyeri_ID INT
DECLARE @Ozel BIT
DECLARE @Islem_ID INT
DECLARE @Islem_Tipi CHAR(30)
DECLARE @Cari_ID INT
DECLARE @Tarih DATETIME
DECLARE @HATarih DATETIME
DECLARE @Borc FLOAT
DECLARE @Alacak FLOAT
DECLARE @Kullanici_ID INT
DECLARE @Doviz_ID INT
DECLARE @KUR FLOAT
SELECT @Islem_ID=PosHareket_ID, @Isyeri_ID=Isyeri_ID, @Ozel=Ozel, @Islem_Tipi=Islem_Tipi,
    @Cari_ID=ISNULL(Cari_ID,0), @Tarih=Islem_Tarih, @HATarih=Hesaba_Aktarim_Tarih, @Borc=BTutar,
    @Alacak=ATutar, @Kullanici_ID=Kullanici_ID, @Doviz_ID=1, @KUR=0
  FROM INSERTED
IF @Cari_ID<>0
BEGIN
  UPDATE ODEMEHAREKET
    SET Islem_ID=@Islem_ID, Isyeri_ID=@Isyeri_ID, Ozel=@Ozel, Islem_Tipi=@Islem_Tipi, Cari_ID=@Cari_ID,
      Sablon_ID=0, Tarih=@Tarih, Gun=DATEDIFF(D,@Tarih,@HATarih ), Yuzde=100, Borc=@Borc, Alacak=@Alacak,
      Durum='AÇIK', Kullanici_ID=@Kullanici_ID, Doviz_ID=@Doviz_ID, KUR=@KUR
    WHERE Islem_ID=@Islem_ID AND Islem_Tipi=@Islem_Tipi
END
ELSE
DELETE FROM ODEMEHAREKET
  WHERE Islem_ID=@Islem_ID AND Islem_Tipi=@Islem_Tipi
