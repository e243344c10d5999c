CREATE TRIGGER KASAODEMEEKLE ON KASAHAREKET FOR INSERT AS
DECLARE @Isyeri_ID INT
DECLARE @Ozel BIT
DECLARE @Islem_ID INT
DECLARE @Islem_Tipi CHAR(30)DECLARE @Cari_ID INT
DECLARE @Tarih DATETIME
DECLARE @Borc FLOAT
DECLARE @Alacak FLOAT
DECLARE @Kullanici_ID INT
DECLARE @Doviz_ID INT
DECLARE @KUR FLOAT
SELECT
    @Islem_ID=Kasa_Hareket_ID,@Isyeri_ID=Isyeri_ID,@Ozel=Ozel,@Islem_Tipi=Islem_Tipi,@Cari_ID=ISNULL(Cari_ID,0),@Tarih=Tarih,@Borc=ATutar,@Alacak=BTutar,@Kullanici_ID=Kullanici_ID,@Doviz_ID=Doviz_ID,@KUR=KUR
  FROM INSERTED
INSERT INTO ODEMEHAREKET
    (Islem_ID,Isyeri_ID,Ozel,Islem_Tipi,Cari_ID,Sablon_ID,Tarih,TAciklama,Gun,Yuzde,Borc,Alacak,Durum,Kullanici_ID,Doviz_ID,KUR)
  Values
    (@Islem_ID,@Isyeri_ID,@Ozel,@Islem_Tipi,@Cari_ID,0,@Tarih,'Peşin',0,100,@Borc,@Alacak,'AÇIK',@Kullanici_ID,@Doviz_ID,@KUR)
