CREATE TRIGGER CEKODEMEEKLE ON CEK FOR INSERT AS
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
SELECT @Bordro_ID=Bordro_ID, @Islem_ID=Cek_ID, @Isyeri_ID=Isyeri_ID, @Ozel=Ozel, @Islem_Tipi=Islem_Tipi,
    @Cari_ID=ISNULL(Cari_ID,0), @Tarih=Vade, @Borc=Borc, @Alacak=Alacak, @Kullanici_ID=Kullanici_ID,
    @Doviz_ID=Doviz_ID, @KUR=KUR
  FROM INSERTED
if @Islem_Tipi='Çek Giriş' OR @Islem_Tipi='Çek Çıkış(C/H)' OR @Islem_Tipi='Çek Çıkış(Müşteriye İade)' OR
    @Islem_Tipi='Çek Giriş(Müşteriden İade)'
Begin
  SELECT @Gun=DATEDIFF(D,Tarih,@Tarih),@BTarih=Tarih
    FROM BORDROKART
    WHERE Baglanti_ID=@Bordro_ID
  INSERT INTO ODEMEHAREKET
      (Islem_ID,Isyeri_ID,Ozel,Islem_Tipi,Cari_ID,Sablon_ID,Tarih,TAciklama,Gun,Yuzde,Borc,Alacak,Durum,Kullanici_ID,Doviz_ID,KUR)
    VALUES
      (@Islem_ID,@Isyeri_ID,@Ozel,@Islem_Tipi,@Cari_ID,0,@BTarih,'Peşin',@Gun,100,@Borc,@Alacak,'AÇIK',@Kullanici_ID,@Doviz_ID,@KUR)
END
