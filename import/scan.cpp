#include "scan.h"

#include <cstdlib>
#include <string>

namespace Libraries::Files::PDF::Import {

namespace {

using Token = QPDFTokenizer::Token;

class Scanner {
public:
    Scanner(const std::shared_ptr<InputSource>& source, std::uint64_t start) : source_(source) {
        tokenizer_.allowEOF();
        source_->seek(static_cast<qpdf_offset_t>(start), SEEK_SET);
    }

    void skip(int tokens);
    Scanned run(const ScanLimits& limits);

private:
    [[nodiscard]] Token read() { return tokenizer_.readToken(source_, "object", true); }
    void take(const Token& token);
    void close(QPDFTokenizer::token_type_e opening);
    void takeNumber(const Token& token);

    std::shared_ptr<InputSource> source_;
    QPDFTokenizer tokenizer_;
    std::vector<QPDFTokenizer::token_type_e> open_;
    std::vector<long long> numbers_; // those that stand directly before
    std::string name_;               // the same
    Scanned result_;
};

void Scanner::skip(int tokens) {
    while (tokens-- > 0)
        static_cast<void>(read());
}

Scanned Scanner::run(const ScanLimits& limits) {
    const auto start = static_cast<std::uint64_t>(source_->tell());
    Token token = read();
    result_.dictionary = token.getType() == QPDFTokenizer::tt_dict_open;
    take(token);
    while (!open_.empty()) {
        token = read();
        const bool isBeyond = result_.values > limits.values ||
                              static_cast<std::uint64_t>(source_->tell()) - start > limits.bytes;
        if (isBeyond || token.getType() == QPDFTokenizer::tt_eof) {
            result_.dictionary = false;
            break;
        }
        take(token);
    }
    result_.end = static_cast<std::uint64_t>(source_->tell());
    return result_;
}

void Scanner::take(const Token& token) {
    const auto type = token.getType();
    const bool isName = type == QPDFTokenizer::tt_name;
    ++result_.values;
    if (isName ? token.getValue() == "/XRef" : name_ == "/Type") result_.mayBeXref = true;
    if (token.isInteger()) {
        takeNumber(token);
        return;
    }
    if (token.isWord("R") && numbers_.size() == 2) {
        result_.references.push_back(numbers_.front());
        result_.values -= 2;
    }
    numbers_.clear();
    name_ = isName ? token.getValue() : std::string();
    if (type == QPDFTokenizer::tt_dict_open || type == QPDFTokenizer::tt_array_open) {
        open_.push_back(type);
    } else if (type == QPDFTokenizer::tt_dict_close) {
        close(QPDFTokenizer::tt_dict_open);
    } else if (type == QPDFTokenizer::tt_array_close) {
        close(QPDFTokenizer::tt_array_open);
    }
}

void Scanner::close(QPDFTokenizer::token_type_e opening) {
    if (!open_.empty() && open_.back() == opening) open_.pop_back();
}

void Scanner::takeNumber(const Token& token) {
    const long long number = std::strtoll(token.getValue().c_str(), nullptr, 10);
    if (name_ == "/Length") result_.length = number;
    name_.clear();
    if (numbers_.size() == 2) numbers_.erase(numbers_.begin());
    numbers_.push_back(number);
}

} // namespace

Scanned scan(const std::shared_ptr<InputSource>& source, std::uint64_t start,
             const ScanLimits& limits) {
    return Scanner(source, start).run(limits);
}

Scanned scanObject(const std::shared_ptr<InputSource>& source, std::uint64_t start) {
    Scanner scanner(source, start);
    scanner.skip(3); // number, generation, "obj"
    return scanner.run({});
}

} // namespace Libraries::Files::PDF::Import
