CREATE TRIGGER MUHASEBEHESAPSIL ON MUHKART FOR DELETE AS
DECLARE @MHesap_ID INT
DECLARE @MHesap_Kod CHAR(30)
DECLARE @AltHesapSay INT
DECLARE @VirgulSira INT
SELECT @MHesap_ID=MHesap_ID, @MHesap_Kod=MHesap_Kod
  FROM DELETED
SELECT @MHesap_Kod=RTRIM(@MHesap_Kod)
SELECT @VirGulSira=LEN(@MHesap_Kod)
WHILE @VirgulSira<>0
BEGIN
  IF SUBSTRING(@MHesap_kod,@VirgulSira,1)='.'
  BEGIN
    SELECT @AltHesapSay=COUNT(MHesap_ID)
      FROM MUHKART
      WHERE MHesap_Kod LIKE LEFT(@MHesap_Kod,@VirgulSira) + '%'
    IF @AltHesapSay=0
    BEGIN
      UPDATE MUHKART
        SET AnaHesaptir=0
        WHERE AnaHesaptir=1 AND MHesap_Kod = LEFT(@MHesap_Kod,@VirgulSira-1)
    END
    BREAK
  END
  SELECT @VirgulSira=@VirgulSira-1
END
DELETE FROM MUHBAKIYE
  WHERE MHesap_ID=@MHesap_ID OR MHesap_Kod=@MHesap_Kod
