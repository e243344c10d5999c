// Saves of the card, each told whole: what it sends to which database, what it shows, how the card stands.
#include <gtest/gtest.h>

#include <functional>

#include "company/kart_sunucusu.h"

namespace {

using namespace kart_testi;
using company::FirmaKarti;

// Statements that stand in many stories, and what stands for them there.
const std::pair<std::string, const char*> kisaltmalar[] = {
    {"master> CREATE DATABASE ORNEK2012 ON ( NAME = ORNEK2012,FILENAME = '/nowhere\\ORNEK2012.mdf', SIZE = "
     "10, MAXSIZE = UNLIMITED, FILEGROWTH = 10 )  LOG ON ( NAME = 'ORNEK2012_log',  FILENAME = "
     "'/nowhere\\ORNEK2012_log.ldf', SIZE = 5MB, MAXSIZE = UNLIMITED, FILEGROWTH = 10 )",
     "(created)"},
    {"Defination_DB> SELECT sysfrm_ID,sysfrm_dbnm,CASE WHEN DB_ID(RTRIM(sysfrm_dbnm))=DB_ID('ORNEK2012') "
     "THEN 'AYNI' WHEN DB_ID(RTRIM(sysfrm_dbnm)) IS NULL THEN 'YOK' ELSE '' END FROM "
     "Defination_DB.dbo.sysfrmlng",
     "(found in the list)"},
    {"Defination_DB> Select * from sysfrmlng\nDefination_DB> INSERT INTO [sysfrmlng]", "(row)"},
    {"Defination_DB> SELECT @@IDENTITY,MIN(sysfrm_ID) FROM sysfrmlng WHERE "
     "DB_ID(RTRIM(sysfrm_dbnm))=DB_ID('ORNEK2012')",
     "(whose row)"},
    {"Defination_DB> INSERT INTO sysusfrmlng(sysfrm_ID,sysus_ID) VALUES (7,1)\nDefination_DB> SELECT * FROM "
     "sysuslng WHERE sysus_ID='1'\nDefination_DB> INSERT INTO Kullanici",
     "(user 1)"},
    {"(whose row) Defination_DB> SELECT sysfrm_ID FROM sysfrmlng WHERE sysfrm_dbnm='ORNEK2012'\n(user 1)",
     "(its user)"},
    {"Defination_DB> BEGIN TRAN\nDefination_DB> DELETE FROM sysusfrmlng WHERE sysfrm_ID='7'\nDefination_DB> "
     "DELETE FROM Kullanici WHERE Firma_ID='7'\nDefination_DB> DELETE FROM sysfrmlng WHERE "
     "sysfrm_ID='7'\nDefination_DB> DELETE FROM Kullanici_Menu WHERE Firma_ID='7'\nDefination_DB> COMMIT "
     "TRAN",
     "(rows deleted)"},
    {"Defination_DB> SELECT name FROM master.dbo.sysdatabases WHERE dbid=DB_ID('ORNEK2012')\nORNEK2012> "
     "SELECT (SELECT COUNT(*) FROM sysobjects WHERE xtype IN ('U','V'))+(SELECT COUNT(*) FROM "
     "master.dbo.sysprocesses WHERE dbid=DB_ID() AND spid<>@@SPID)",
     "(empty?)"},
    {"master> SELECT name FROM  sysdatabases where name='ORNEK2012'", "(known?)"},
    {"ORNEK2012> CREATE TABLE AMBAR\n... ORNEK2012> CREATE TRIGGER MUHBAKIYEHESAPLASIL", "(schema)"},
};

// What a save sends, shows and leaves, as one text: each statement behind its database, rows without their
// columns, of a run of statements on the company the first and the last.
std::string oyku(KartSunucusu& s, FirmaKarti kart, company::AdVarken adVarken) {
  const bool kapat = company::Kaydet(s.oturum, kart, adVarken);
  std::string out;
  for (const auto& log : s.server.connectionLogs) {
    int inARow = 0;
    std::string last;
    for (std::string line : log) {
      if (const auto at = line.find("Ornek2012"); at != std::string::npos) line.replace(at, 9, "ORNEK2012");
      const bool rows = line.find("INSERT INTO [") != std::string::npos;
      const bool company =
          line.starts_with("ORNEK2012> ") && line.find("> SELECT (SELECT") == std::string::npos;
      if (rows || company || line.find("INSERT INTO Kullanici") != std::string::npos)
        line = line.substr(0, line.find_first_of("(\n\r", 20));
      if (const auto as = line.find(" ON "); company && as != std::string::npos) line.resize(as);
      while (line.ends_with(' ')) line.pop_back();
      inARow = company || (rows && line.ends_with("[MUHKART]")) ? inARow + 1 : 0;
      if (inARow < 2) out += line + "\n";
      last = line;
    }
    if (inARow > 1) out += "... " + last + "\n";
  }
  for (const auto& [text, name] : kisaltmalar)
    for (auto at = out.find(text); at != std::string::npos; at = out.find(text))
      out.replace(at, text.size() + 1, std::string(name) + " ");
  for (const auto& box : s.boxes.shown)
    out += (box.question                      ? "? "
            : box.icon == session::Icon::Stop ? "X "
                                              : "! ") +
           (box.text.starts_with("CREATE") || box.text.starts_with("INSERT") ? box.text.substr(0, 26)
                                                                             : box.text) +
           "\n";
  out += kapat ? "closed" : kart.Vazgecildi ? "given up" : "open";
  if (s.oturum.Baglanti) out += " on " + s.oturum.Baglanti->parts().database;
  return out + (s.oturum.Son_Hata.empty() ? "" : ": " + s.oturum.Son_Hata);
}

TEST(FirmaKarti, EverySaveTellsItsStory) {
  const db::SqlError koptu(db::ErrorKind::LinkBroken, 0, "gone"),
      ret(db::ErrorKind::StatementRefused, 8152, "no");
  const struct {
    const char* name;
    std::function<void(KartSunucusu&, FirmaKarti&)> once;
    const char* oyku;
    company::AdVarken adVarken = company::AdVarken::Sor;
  } cases[] = {
      {"all goes well", [](auto&, auto&) {},
       R"((known?) (created) (found in the list) (row) (its user) (schema) closed on master)"},
      {"with a chart",
       [](auto& s, auto& k) {
         k.StandartHesapPlani = true;
         s.plan();
       },
       R"((known?) (created) (found in the list) (row) (its user) ORNEK2012> CREATE TABLE AMBAR
... ORNEK2012> COMMIT TRAN
closed on master)"},
      {"name is known", [](auto& s, auto&) { s.bilinen(); },
       R"((known?) (found in the list) (empty?) closed on master: Bu İsimle Bir Firma Zaten Var.)"},
      {"name is known, chart wanted",
       [](auto& s, auto& k) {
         s.bilinen();
         k.StandartHesapPlani = true;
         s.plan();
         s.boxes.answers = {true};
       },
       R"((known?) (found in the list) (empty?) ORNEK2012> BEGIN TRAN
... ORNEK2012> COMMIT TRAN
? "ORNEK2012" adında bir firma zaten var; yeni firma oluşturulmadı.
Standart hesap planı var olan bu firmaya yüklensin mi?
closed on master: Bu İsimle Bir Firma Zaten Var.)"},
      {"name is known, chart not wanted",
       [](auto& s, auto& k) {
         s.bilinen();
         k.StandartHesapPlani = true;
         s.plan();
         s.boxes.answers = {false};
       },
       R"((known?) (found in the list) (empty?) ? "ORNEK2012" adında bir firma zaten var; yeni firma oluşturulmadı.
Standart hesap planı var olan bu firmaya yüklensin mi?
closed on master: Bu İsimle Bir Firma Zaten Var.)"},
      {"name is known, chart asked for in a shell",
       [](auto& s, auto& k) {
         s.bilinen();
         s.plan();
         k.StandartHesapPlani = true;
       },
       R"((known?) (found in the list) (empty?) closed on master: Bu İsimle Bir Firma Zaten Var.)",
       company::AdVarken::Yazma},
      {"a database without a row, not wanted",
       [](auto& s, auto&) {
         s.sahipsiz();
         s.boxes.answers = {false};
       },
       R"((known?) (found in the list) (empty?) ? "Ornek2012" adında, firma listesinde olmayan ve içi boş bir veritabanı var; yarıda kalmış bir kurulumdan kalmış olabilir.
Firma bu veritabanında oluşturulsun mu?
closed on master: Bu İsimle Bir Firma Zaten Var.)"},
      {"a database without a row, taken up",
       [](auto& s, auto&) {
         s.sahipsiz();
         s.boxes.answers = {true};
       },
       R"((known?) (found in the list) (empty?) (found in the list) (row) (its user) (schema) ? "Ornek2012" adında, firma listesinde olmayan ve içi boş bir veritabanı var; yarıda kalmış bir kurulumdan kalmış olabilir.
Firma bu veritabanında oluşturulsun mu?
closed on master)"},
      {"taken up, its row refused",
       [&](auto& s, auto&) {
         s.sahipsiz();
         s.boxes.answers = {true};
         s.server.fail("INSERT INTO [sysfrmlng]", ret);
       },
       R"((known?) (found in the list) (empty?) (found in the list) (row) Defination_DB> IF @@TRANCOUNT>0 ROLLBACK TRAN
? "Ornek2012" adında, firma listesinde olmayan ve içi boş bir veritabanı var; yarıda kalmış bir kurulumdan kalmış olabilir.
Firma bu veritabanında oluşturulsun mu?
X -2147217900 : no
X "Ornek2012" firması listeye yazılamadı.
Engel giderildikten sonra firmayı yeniden oluşturunuz.
open on Defination_DB: -2147217900 : no)"},
      {"a database of the server's own",
       [](auto& s, auto& k) {
         s.sahipsiz();
         k.Firma_Adi = "msdb";
       },
       R"(master> SELECT name FROM  sysdatabases where name='msdb'
closed on master: Bu İsimle Bir Firma Zaten Var.)"},
      {"the look-up fails", [&](auto& s, auto&) { s.server.fail("FROM  sysdatabases", koptu); },
       R"((known?) ! -2147467259 : gone
! SELECT name FROM  sysdatabases where name='ORNEK2012'
open on master: -2147467259 : gone)"},
      {"creation refused", [&](auto& s, auto&) { s.server.fail("CREATE DATABASE", ret); },
       R"((known?) (created) (found in the list) (row) (its user) ! -2147217900 : no
! CREATE DATABASE ORNEK2012 
open on Defination_DB: -2147217900 : no)"},
      {"made by another run meanwhile",
       [&](auto& s, auto&) {
         s.server.fail("CREATE DATABASE", db::SqlError(db::ErrorKind::StatementRefused, 1801, "there"));
       },
       R"((known?) (created) closed on master: Bu İsimle Bir Firma Zaten Var.)"},
      {"row refused", [&](auto& s, auto&) { s.server.fail("INSERT INTO [sysfrmlng]", ret); },
       R"((known?) (created) (found in the list) (row) Defination_DB> IF @@TRANCOUNT>0 ROLLBACK TRAN
master> DROP DATABASE ORNEK2012
X -2147217900 : no
X "ORNEK2012" firması listeye yazılamadı.
Engel giderildikten sonra firmayı yeniden oluşturunuz.
open on master: -2147217900 : no)"},
      {"row refused, the way back too",
       [&](auto& s, auto&) {
         s.server.fail("INSERT INTO [sysfrmlng]", ret);
         s.server.fail("DROP DATABASE", koptu);
       },
       R"((known?) (created) (found in the list) (row) Defination_DB> IF @@TRANCOUNT>0 ROLLBACK TRAN
master> DROP DATABASE ORNEK2012
X -2147217900 : no
X "ORNEK2012" firması listeye yazılamadı.
Engel giderildikten sonra firmayı yeniden oluşturunuz.
open on master: -2147217900 : no)"},
      {"another run's row came first",
       [](auto& s, auto&) {
         s.server.rows("SELECT @@IDENTITY", {"a", "b"}, {{9, 7}});
       },
       R"((known?) (created) (found in the list) (row) (whose row) Defination_DB> DELETE FROM sysfrmlng WHERE sysfrm_ID=9
closed on master: Bu İsimle Bir Firma Zaten Var.)"},
      {"own row came first",
       [](auto& s, auto&) {
         s.server.rows("SELECT @@IDENTITY", {"a", "b"}, {{7, 7}});
       },
       R"((known?) (created) (found in the list) (row) (its user) (schema) closed on master)"},
      {"a row was left behind", [](auto& s, auto&) { s.eskiSatir(); },
       R"((known?) (created) (found in the list) Defination_DB> BEGIN TRAN
Defination_DB> DELETE FROM sysusfrmlng WHERE sysfrm_ID='3'
Defination_DB> DELETE FROM Kullanici WHERE Firma_ID='3'
Defination_DB> DELETE FROM sysfrmlng WHERE sysfrm_ID='3'
Defination_DB> DELETE FROM Kullanici_Menu WHERE Firma_ID='3'
(row) Defination_DB> COMMIT TRAN
Defination_DB> SELECT sysfrm_ID FROM sysfrmlng WHERE sysfrm_dbnm='ORNEK2012'
(user 1) (schema) closed on master)"},
      {"a row was left behind, the new one is refused",
       [&](auto& s, auto&) {
         s.eskiSatir();
         s.server.fail("INSERT INTO [sysfrmlng]", ret);
       },
       R"((known?) (created) (found in the list) Defination_DB> BEGIN TRAN
Defination_DB> DELETE FROM sysusfrmlng WHERE sysfrm_ID='3'
Defination_DB> DELETE FROM Kullanici WHERE Firma_ID='3'
Defination_DB> DELETE FROM sysfrmlng WHERE sysfrm_ID='3'
Defination_DB> DELETE FROM Kullanici_Menu WHERE Firma_ID='3'
(row) Defination_DB> IF @@TRANCOUNT>0 ROLLBACK TRAN
master> DROP DATABASE ORNEK2012
X -2147217900 : no
X "ORNEK2012" firması listeye yazılamadı.
Engel giderildikten sonra firmayı yeniden oluşturunuz.
open on master: -2147217900 : no)"},
      {"two rows of one name",
       [](auto& s, auto&) {
         s.server.rows("SELECT sysfrm_ID FROM sysfrmlng", {"sysfrm_ID"}, {{7}, {8}});
         s.server.rows("THEN 'AYNI'", {"a", "b", "c"}, {{8, "ORNEK2012", "AYNI"}});
       },
       R"((known?) (created) (found in the list) Defination_DB> BEGIN TRAN
Defination_DB> DELETE FROM sysusfrmlng WHERE sysfrm_ID='8'
Defination_DB> DELETE FROM Kullanici WHERE Firma_ID='8'
Defination_DB> DELETE FROM sysfrmlng WHERE sysfrm_ID='8'
Defination_DB> DELETE FROM Kullanici_Menu WHERE Firma_ID='8'
(row) Defination_DB> COMMIT TRAN
Defination_DB> SELECT sysfrm_ID FROM sysfrmlng WHERE sysfrm_dbnm='ORNEK2012'
(found in the list) Defination_DB> INSERT INTO sysusfrmlng(sysfrm_ID,sysus_ID) VALUES (8,1)
Defination_DB> SELECT * FROM sysuslng WHERE sysus_ID='1'
Defination_DB> INSERT INTO Kullanici
(schema) closed on master)"},
      {"right refused", [&](auto& s, auto&) { s.server.fail("INSERT INTO Kullanici", ret); },
       R"((known?) (created) (found in the list) (row) (its user) ! -2147217900 : no
! INSERT INTO Kullanici (Fir
X "ORNEK2012" firmasının oluşturulması yarıda kaldı; veritabanı eksiktir.
Engel giderildikten sonra firmayı listeden silip yeniden oluşturunuz.
open on Defination_DB: -2147217900 : no)"},
      {"no first user",
       [](auto& s, auto&) {
         s.server.rows("SELECT * FROM sysuslng", {"sysus_nm", "sysus"}, {});
       },
       R"((known?) (created) (found in the list) (row) (whose row) Defination_DB> SELECT sysfrm_ID FROM sysfrmlng WHERE sysfrm_dbnm='ORNEK2012'
Defination_DB> INSERT INTO sysusfrmlng(sysfrm_ID,sysus_ID) VALUES (7,1)
Defination_DB> SELECT * FROM sysuslng WHERE sysus_ID='1'
X -2147217900 : Either BOF or EOF is True, or the current record has been deleted. Requested operation requires a current record.
X "ORNEK2012" firmasının oluşturulması yarıda kaldı; veritabanı eksiktir.
Engel giderildikten sonra firmayı listeden silip yeniden oluşturunuz.
open on Defination_DB: -2147217900 : Either BOF or EOF is True, or the current record has been deleted. Requested operation requires a current record.)"},
      {"a view refused", [&](auto& s, auto&) { s.server.fail("CREATE VIEW SATICIANALIZ", ret); },
       R"((known?) (created) (found in the list) (row) (its user) (schema) ! -2147217900 : no
! CREATE VIEW SATICIANALIZ A
closed on master: -2147217900 : no)"},
      {"link broken in the schema", [&](auto& s, auto&) { s.server.fail("CREATE TABLE STOKKART", koptu); },
       R"((known?) (created) (found in the list) (row) (its user) ORNEK2012> CREATE TABLE AMBAR
... ORNEK2012> CREATE TABLE STOKKART
! -2147467259 : gone
! CREATE TABLE STOKKART (Sto
X "ORNEK2012" firmasının oluşturulması yarıda kaldı; veritabanı eksiktir.
Engel giderildikten sonra firmayı listeden silip yeniden oluşturunuz.
open on ORNEK2012: -2147467259 : gone)"},
      {"given up before the database", [](auto& s, auto&) { s.progress.cancelAt = 0; },
       R"((known?) given up on master)"},
      {"given up before the first table",
       [](auto& s, auto&) {
         s.progress.cancelAt = 1;
         s.yeniSatir();
       },
       R"((known?) (created) (found in the list) (row) (its user) master> DROP DATABASE ORNEK2012
(found in the list) (rows deleted) given up on Defination_DB)"},
      {"given up in the chart",
       [](auto& s, auto& k) {
         s.progress.cancelAt = 240;
         s.yeniSatir();
         k.StandartHesapPlani = true;
         s.plan();
       },
       R"((known?) (created) (found in the list) (row) (its user) ORNEK2012> CREATE TABLE AMBAR
... ORNEK2012> IF @@TRANCOUNT>0 ROLLBACK TRAN
master> DROP DATABASE ORNEK2012
(found in the list) (rows deleted) given up on Defination_DB)"},
      {"given up, the database stays",
       [&](auto& s, auto&) {
         s.progress.cancelAt = 100;
         s.server.fail("DROP DATABASE", db::SqlError(db::ErrorKind::StatementRefused, 3702, "in use"));
       },
       R"((known?) (created) (found in the list) (row) (its user) ORNEK2012> CREATE TABLE AMBAR
... ORNEK2012> INSERT INTO IP_FASTPAY
master> DROP DATABASE ORNEK2012
master> IF @@TRANCOUNT>0 ROLLBACK TRAN
X -2147217900 : in use
X "ORNEK2012" firmasının oluşturulması yarıda kaldı; veritabanı eksiktir.
Engel giderildikten sonra firmayı listeden silip yeniden oluşturunuz.
open on master: -2147217900 : in use)"},
      {"given up, the rows stay",
       [&](auto& s, auto&) {
         s.progress.cancelAt = 100;
         s.yeniSatir();
         s.server.fail("DELETE FROM Kullanici ", ret);
       },
       R"((known?) (created) (found in the list) (row) (its user) ORNEK2012> CREATE TABLE AMBAR
... ORNEK2012> INSERT INTO IP_FASTPAY
master> DROP DATABASE ORNEK2012
(found in the list) Defination_DB> BEGIN TRAN
Defination_DB> DELETE FROM sysusfrmlng WHERE sysfrm_ID='7'
Defination_DB> DELETE FROM Kullanici WHERE Firma_ID='7'
Defination_DB> IF @@TRANCOUNT>0 ROLLBACK TRAN
X -2147217900 : no
X "ORNEK2012" firmasının oluşturulması yarıda kaldı; veritabanı eksiktir.
Engel giderildikten sonra firmayı listeden silip yeniden oluşturunuz.
open on Defination_DB: -2147217900 : no)"},
      {"catalog in its place", [](auto& s, auto&) { s.oturum.Katalog_Kurulumu = true; },
       R"((known?) (created) ORNEK2012> CREATE TABLE VRSYN
... ORNEK2012> CREATE TABLE OKODLABELS
closed on master)"},
      {"catalog in its place, known",
       [](auto& s, auto&) {
         s.bilinen();
         s.oturum.Katalog_Kurulumu = true;
       },
       R"((known?) closed on master: Bu Serverda Daha Önce Default Tanımı Yapılmış. Bu Default Tanımı Yeniden Set Etmek İster misiniz?)"},
      {"card with a fault", [](auto&, auto& k) { k.Firma_Kodu = ""; }, R"(X Firma Kodunu boş geçemezsiniz.
open)"},
      {"card that is only looked at", [](auto& s, auto&) { s.oturum.Inceleme = true; }, R"(open)"},
      {"existing card",
       [](auto& s, auto& k) {
         s.varOlan();
         k.Sehir = " İZMİR ";
       },
       R"(Defination_DB> Select * from sysfrmlng WHERE sysfrm_ID= 3
Defination_DB> UPDATE [sysfrmlng] SET [sysfrm_nm]='Örnek Ticaret',[sysfrm_dbnm]='ORNEK2012',[sysfrm_kd]='00001',[Mali_Yil_Baslangic]='20120101 00:00:00.000',[Mali_Yil_Bitis]='20121231 00:00:00.000',[sehir]='İZMİR' WHERE [sysfrm_nm]='x' AND [sysfrm_dbnm]='x' AND [sysfrm_kd]='x' AND [Mali_Yil_Baslangic]='x' AND [Mali_Yil_Bitis]='x' AND [Adres]='x' AND [sehir]='x' AND [Ulke]='x' AND [Tel1]='x' AND [Tel2]='x' AND [Fax]='x' AND [Vergi_Dairesi]='x' AND [Vergi_Numarasi]='x'
closed on master)"},
      {"existing card, other name",
       [](auto& s, auto&) {
         s.varOlan();
         s.oturum.Eski_Firma_Adi = "BASKA";
       },
       R"((known?) Defination_DB> Select * from sysfrmlng WHERE sysfrm_ID= 3
Defination_DB> UPDATE [sysfrmlng] SET [sysfrm_nm]='Örnek Ticaret',[sysfrm_dbnm]='ORNEK2012',[sysfrm_kd]='00001',[Mali_Yil_Baslangic]='20120101 00:00:00.000',[Mali_Yil_Bitis]='20121231 00:00:00.000' WHERE [sysfrm_nm]='x' AND [sysfrm_dbnm]='x' AND [sysfrm_kd]='x' AND [Mali_Yil_Baslangic]='x' AND [Mali_Yil_Bitis]='x' AND [Adres]='x' AND [sehir]='x' AND [Ulke]='x' AND [Tel1]='x' AND [Tel2]='x' AND [Fax]='x' AND [Vergi_Dairesi]='x' AND [Vergi_Numarasi]='x'
closed on master)"},
      {"existing card, other name that is known",
       [](auto& s, auto&) {
         s.varOlan();
         s.bilinen();
         s.oturum.Eski_Firma_Adi = "BASKA";
       },
       R"((known?) closed on master: Bu İsimle Bir Firma Zaten Var )"},
      {"existing card, the look-up of its other name fails",
       [&](auto& s, auto&) {
         s.varOlan();
         s.oturum.Eski_Firma_Adi = "BASKA";
         s.server.fail("FROM  sysdatabases", koptu);
       },
       R"((known?) ! -2147467259 : gone
! SELECT name FROM  sysdatabases where name='ORNEK2012'
open on master: -2147467259 : gone)"},
      {"existing card, its row cannot be read",
       [&](auto& s, auto&) {
         s.varOlan();
         s.server.fail("Select * from sysfrmlng", koptu);
       },
       R"(Defination_DB> Select * from sysfrmlng WHERE sysfrm_ID= 3
! gone
open on Defination_DB)"},
      {"existing card, its row cannot be written",
       [&](auto& s, auto&) {
         s.varOlan();
         s.server.fail("UPDATE [sysfrmlng]", koptu);
       },
       R"(Defination_DB> Select * from sysfrmlng WHERE sysfrm_ID= 3
Defination_DB> UPDATE [sysfrmlng] SET [sysfrm_nm]='Örnek Ticaret',[sysfrm_dbnm]='ORNEK2012',[sysfrm_kd]='00001',[Mali_Yil_Baslangic]='20120101 00:00:00.000',[Mali_Yil_Bitis]='20121231 00:00:00.000' WHERE [sysfrm_nm]='x' AND [sysfrm_dbnm]='x' AND [sysfrm_kd]='x' AND [Mali_Yil_Baslangic]='x' AND [Mali_Yil_Bitis]='x' AND [Adres]='x' AND [sehir]='x' AND [Ulke]='x' AND [Tel1]='x' AND [Tel2]='x' AND [Fax]='x' AND [Vergi_Dairesi]='x' AND [Vergi_Numarasi]='x'
X -2147467259 : gone
open on Defination_DB: -2147467259 : gone)"},
      {"existing card, chart given up",
       [](auto& s, auto& k) {
         s.varOlan();
         s.plan();
         k.StandartHesapPlani = true;
         s.progress.cancelAt = 0;
       },
       R"(Defination_DB> Select * from sysfrmlng WHERE sysfrm_ID= 3
Defination_DB> UPDATE [sysfrmlng] SET [sysfrm_nm]='Örnek Ticaret',[sysfrm_dbnm]='ORNEK2012',[sysfrm_kd]='00001',[Mali_Yil_Baslangic]='20120101 00:00:00.000',[Mali_Yil_Bitis]='20121231 00:00:00.000' WHERE [sysfrm_nm]='x' AND [sysfrm_dbnm]='x' AND [sysfrm_kd]='x' AND [Mali_Yil_Baslangic]='x' AND [Mali_Yil_Bitis]='x' AND [Adres]='x' AND [sehir]='x' AND [Ulke]='x' AND [Tel1]='x' AND [Tel2]='x' AND [Fax]='x' AND [Vergi_Dairesi]='x' AND [Vergi_Numarasi]='x'
Defination_DB> BEGIN TRAN
Defination_DB> SELECT * FROM ORNEK2012.dbo.MUHKART
Defination_DB> INSERT INTO [ORNEK2012].dbo.[MUHKART]
Defination_DB> IF @@TRANCOUNT>0 ROLLBACK TRAN
! Standart hesap planının yüklenmesinden vazgeçildi.
closed on master)"},
  };
  for (const auto& c : cases) {
    KartSunucusu s;
    FirmaKarti kart = gecerliKart();
    c.once(s, kart);
    EXPECT_EQ(oyku(s, kart, c.adVarken), c.oyku) << c.name;
  }
}

}  // namespace
