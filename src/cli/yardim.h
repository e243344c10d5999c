// Options described as data, as the parser's options, with a help text in Turkish. The command line, the
// desktop program and the maker of the manual pages share it.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "cli/komut.h"

namespace cli {

// Labels and widths of the help; also -h itself.
void turkceKonus(CLI::App& app);
void secenekEkle(CLI::App& app, const Secenek& secenek);
// What was given of the options.
Degerler degerlerOku(const CLI::App& app, std::span<const Secenek> secenekler);
// Why a value is not among those that its option takes; empty when all are.
std::string secimHatasi(const Degerler& degerler, std::span<const Secenek> secenekler);
// In the reader's words: the parser's own are English.
std::string turkceHata(const CLI::App& app, const CLI::ParseError& hata);

// The name under which a value is kept: the last spelling without dashes.
std::string secenekAdi(const Secenek& secenek);
// "a, b ya da c"
std::string secimMetni(const Secenek& secenek);
std::string cikisKodlariMetni(const CikisKodlari& kodlar);

// Options of the whole program, before or behind the command.
std::span<const Secenek> genelSecenekler();

}  // namespace cli
