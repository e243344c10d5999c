#include "cli/kutular.h"

#include <algorithm>

#include "session/metin.h"
#include "session/sure.h"

namespace cli {

void KomutKutulari::message(const std::string& text, session::Icon icon, std::string_view) {
  shown_.push_back(text);
  // A refusal may look like news: it is held back until the command has gone well.
  if (ortam_.sessiz && icon == session::Icon::Information)
    ortam_.bekleyen += text + "\n";
  else
    ortam_.err << text << "\n";
}

bool KomutKutulari::ask(const std::string& text, session::Icon, std::string_view) {
  ortam_.err << text << " [e/H] " << std::flush;
  if (evet) {
    ortam_.err << "e\n";
    return true;
  }
  if (!ortam_.girisTerminal) {
    ortam_.err << "H\nOnay için --evet seçeneğini verin.\n";
    return false;
  }
  std::string answer;
  std::getline(ortam_.in, answer);
  const std::string upper = session::Buyuk_Harf(session::Trim(answer));
  return upper == "E" || upper == "EVET";
}

bool KomutKutulari::gosterildi(const std::string& text) const {
  return std::find(shown_.begin(), shown_.end(), text) != shown_.end();
}

KomutIlerlemesi::~KomutIlerlemesi() {
  bitir();
}

void KomutIlerlemesi::bitir() {
  if (drawn_) ortam_.err << "\r\033[K" << std::flush;
  drawn_ = false;
  value_ = -1;
  interrupt_.reset();
}

void KomutIlerlemesi::text(const std::string& text) {
  if (satirlarla && !ortam_.sessiz && !ortam_.hataTerminal && text != text_ && !text.empty())
    ortam_.err << text << "\n";
  text_ = text;
  draw();
}

void KomutIlerlemesi::step(std::int64_t value, std::int64_t maximum) {
  if (maximum <= 0) return;
  percent_ = value * 100 / maximum;
  draw();
}

// By bytes, where they are known.
void KomutIlerlemesi::whole(std::int64_t value, std::int64_t maximum) {
  if (maximum <= 0) return;
  if (value_ < 0 || value < value_ || maximum != maximum_) {
    first_ = value;
    begun_ = Clock::now();
  }
  value_ = value;
  maximum_ = maximum;
  if (value * 100 / maximum == percent_) return;
  percent_ = value * 100 / maximum;
  draw();
}

// The time that is left goes on while the percentage stands.
void KomutIlerlemesi::pump() {
  constexpr std::chrono::milliseconds often{500};
  if (drawn_ && Clock::now() - written_ >= often) draw();
}

bool KomutIlerlemesi::cancelled() {
  if (!interrupt_) interrupt_.emplace();
  return platform::Interrupt::wished();
}

std::string KomutIlerlemesi::left() const {
  if (value_ < 0 || maximum_ <= first_) return {};
  const auto passed = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begun_).count();
  const std::string time = session::kalanYazisi(
      passed, static_cast<double>(value_ - first_) / static_cast<double>(maximum_ - first_));
  return time.empty() ? time : ", kalan yaklaşık " + time;
}

void KomutIlerlemesi::draw() {
  if (!ortam_.hataTerminal || ortam_.sessiz) return;
  ortam_.err << "\r\033[K%" << percent_ << " " << text_ << left() << std::flush;
  written_ = Clock::now();
  drawn_ = true;
}

}  // namespace cli
