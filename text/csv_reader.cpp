#include "text/csv_reader.h"

#include <utf8.h>

#include <algorithm>

namespace tremvik::text {
namespace {

int LineOf(std::string_view text, std::size_t at) {
  return 1 + static_cast<int>(std::ranges::count(text.substr(0, at), '\n'));
}

void CheckEncoding(std::string_view text) {
  const auto invalid = utf8::find_invalid(text.begin(), text.end());
  if (invalid != text.end()) {
    const auto at = static_cast<std::size_t>(invalid - text.begin());
    throw CsvError{LineOf(text, at), "o texto não está em UTF-8; grave o arquivo como UTF-8"};
  }
  const std::size_t nul = text.find('\0');
  if (nul != std::string_view::npos) throw CsvError{LineOf(text, nul), "há um caractere NUL no texto"};
}

}  // namespace

CsvReader::CsvReader(std::string_view text) : text_(text) {
  CheckEncoding(text_);
  if (text_.starts_with("\xEF\xBB\xBF")) at_ = 3;
}

bool CsvReader::AtLineEnd() const { return text_[at_] == '\n' || text_.substr(at_).starts_with("\r\n"); }

void CsvReader::ReadQuoted(std::string& field) {
  const int opened = line_;
  for (++at_; !AtEnd(); ++at_) {
    if (text_[at_] == '"') {
      ++at_;
      if (AtEnd() || text_[at_] != '"') return;
    }
    if (text_[at_] == '\n') ++line_;
    field += text_[at_];
  }
  throw CsvError{opened, "as aspas abertas nesta linha não se fecham"};
}

void CsvReader::ReadPlain(std::string& field) {
  while (!AtEnd() && text_[at_] != ',' && !AtLineEnd()) {
    if (text_[at_] == '"') throw CsvError{line_, "aspas no meio de um campo; ponha o campo todo entre aspas"};
    if (text_[at_] == '\r') throw CsvError{line_, "retorno de carro sem avanço de linha"};
    field += text_[at_++];
  }
}

bool CsvReader::Next(std::vector<std::string>& fields) {
  fields.clear();
  if (AtEnd()) return false;
  record_line_ = line_;
  while (true) {
    std::string& field = fields.emplace_back();
    if (!AtEnd() && text_[at_] == '"') {
      ReadQuoted(field);
    } else {
      ReadPlain(field);
    }
    if (AtEnd()) return true;
    if (AtLineEnd()) break;
    if (text_[at_] != ',') throw CsvError{line_, "texto depois das aspas que fecham um campo"};
    ++at_;
  }
  at_ += text_[at_] == '\n' ? 1U : 2U;
  ++line_;
  return true;
}

}  // namespace tremvik::text
