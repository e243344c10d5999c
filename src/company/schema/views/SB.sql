CREATE View SB as
SELECT STOKKART.Stok_ID, STOKKART.Stok_Kod, convert(money,ISNULL(SUM(case when STOKHAREKET.Giris>0 then case
    when STOKHAREKET.Carpan<>1 then case when Rtrim(STOKHAREKET.Birim)=Rtrim(STOKKART.Birim2) then
    STOKHAREKET.Miktar*STOKKART.Birim2_Katsayi Else case when
    Rtrim(STOKHAREKET.Birim)=Rtrim(STOKKART.Birim3) then STOKHAREKET.Miktar*STOKKART.Birim3_Katsayi ELSE
    case when STOKKART.Birim2_Katsayi =STOKHAREKET.Carpan then STOKHAREKET.Miktar*STOKKART.Birim2_Katsayi
    ELSE case when STOKKART.Birim3_Katsayi =STOKHAREKET.Carpan then
    STOKHAREKET.Miktar*STOKKART.Birim3_Katsayi END END END End Else STOKHAREKET.Giris End End),0))
    -convert(money,ISNULL(SUM(case when STOKHAREKET.Cikis>0 then case when STOKHAREKET.Carpan<>1 then case
    when STOKHAREKET.Birim=STOKKART.Birim2 then STOKHAREKET.Miktar*STOKKART.Birim2_Katsayi Else
    STOKHAREKET.Miktar*STOKKART.Birim3_Katsayi End Else STOKHAREKET.Cikis End End),0)) as Kalan
FROM STOKKART
LEFT JOIN STOKHAREKET ON (STOKKART.Stok_ID=STOKHAREKET.Stok_ID)
GROUP BY STOKKART.Stok_Kod, STOKKART.Stok_ID
