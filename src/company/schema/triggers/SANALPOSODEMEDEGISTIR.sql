CREATE TRIGGER SANALPOSODEMEDEGISTIR ON CARIHAREKET FOR UPDATE AS
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
SELECT @Islem_ID=Cari_Hareket_ID, @Isyeri_ID=Isyeri_ID, @Ozel=Ozel, @Islem_Tipi=Islem_Tipi,
    @Cari_ID=ISNULL(Cari_ID,0), @Tarih=Tarih, @Borc=ATutar, @Alacak=BTutar, @Kullanici_ID=Kullanici_ID,
    @Doviz_ID=Doviz_ID, @KUR=KUR
  From INSERTED
IF @Cari_ID<>0
IF @Islem_Tipi='Sanal Pos İşlemi'
BEGIN
  UPDATE ODEMEHAREKET
    SET Islem_ID=@Islem_ID, Isyeri_ID=@Isyeri_ID, Ozel=@Ozel, Islem_Tipi=@Islem_Tipi, Cari_ID=@Cari_ID,
      Sablon_ID=0, Tarih=@Tarih, Gun=0, Yuzde=100, Borc=@Borc, Alacak=@Alacak, Durum='AÇIK',
      Kullanici_ID=@Kullanici_ID, Doviz_ID=@Doviz_ID, KUR=@KUR
    WHERE Islem_ID=@Islem_ID AND Islem_Tipi=@Islem_Tipi
End
Else
DELETE FROM ODEMEHAREKET
  WHERE Islem_ID=@Islem_ID AND Islem_Tipi=@Islem_Tipi
