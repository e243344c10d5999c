CREATE TRIGGER MUHASEBEHESAPEKLE ON MUHKART FOR INSERT AS
DECLARE @MHesap_ID CHAR(30)
DECLARE @MHesap_Kod CHAR(30)
DECLARE @Ana_Hesap_ID INT
DECLARE @Ana_Hesap_Kod CHAR(26)
DECLARE @VirgulSira INT
DECLARE @Virgul CHAR
DECLARE @AnaHesaptir SMALLINT
SELECT @MHesap_ID=MHesap_ID, @MHesap_Kod=MHesap_Kod, @VirgulSira=PATINDEX('%.%', MHesap_Kod)
  FROM INSERTED
SELECT @MHesap_Kod=RTRIM(@MHesap_Kod)
SELECT @AnaHesaptir=0
SELECT @Ana_Hesap_ID=0
IF @VirgulSira<>0
BEGIN
  SELECT @Ana_Hesap_Kod=LEFT(@MHesap_Kod,@VirgulSira-1)
  SELECT @Ana_Hesap_ID=ISNULL(MHesap_ID,0)
    FROM MUHKART
    WHERE MHesap_Kod=@Ana_Hesap_Kod
  IF @Ana_Hesap_ID<>0
  BEGIN
    UPDATE MUHKART
      SET AnaHesaptir=1
      WHERE AnaHesaptir=0 AND MHesap_Kod = @Ana_Hesap_Kod
  END
  SELECT @VirGulSira=LEN(@MHesap_Kod)
  WHILE @VirgulSira<>0
  BEGIN
    IF SUBSTRING(@MHesap_kod,@VirgulSira,1)='.'
    BEGIN
      UPDATE MUHKART
        SET AnaHesaptir=1
        WHERE AnaHesaptir=0 AND MHesap_Kod = LEFT(@MHesap_Kod,@VirgulSira-1)
      BREAK
    END
    SELECT @VirgulSira=@VirgulSira-1
  END
END
ELSE
BEGIN
  SELECT @AnaHesaptir=1
  SELECT @Ana_Hesap_ID=ISNULL(MHesap_ID,0)
    FROM MUHKART
    WHERE MHesap_Kod=@MHesap_Kod
END
UPDATE MUHKART
  SET AnaHesaptir=@AnaHesaptir,Ana_Hesap_ID=@Ana_Hesap_ID
  WHERE MHesap_ID=@MHesap_ID
UPDATE MUHKART
  SET AnaHesaptir=1
  WHERE AnaHesaptir=0 AND MHesap_Kod LIKE RTRIM(@MHesap_Kod) + '.%' AND (SELECT Count(MHesap_ID) FROM
    MUHKART as MH2 WHERE MHesap_Kod LIKE RTRIM(MUHKART.MHesap_Kod) +'.%')=0
INSERT INTO MUHBAKIYE
SELECT MHesap_ID,MHesap_Kod,0
  FROM INSERTED
