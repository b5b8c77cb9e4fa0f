#include "TokenWindow.h"

#include "ParseSession.h"

#include <algorithm>
#include <cstring>

namespace sqlantlr {

namespace {

constexpr size_t slabSize = 1024;
// Raw tokens kept behind the current one when a statement's tokens are
// recycled: error nodes and rule results look back a token or two.
constexpr ANTLR3_MARKER keptBehind = 64;

// The window of the parse running on this thread: the stream functions are
// called for every look-ahead, so they find it here rather than through the
// lexer and its session. The initial-exec model makes each read one load
// instead of a call into the dynamic linker (__tls_get_addr), which cost
// about 4% of an import.
thread_local TokenWindow *activeWindow __attribute__((tls_model("initial-exec"))) = nullptr;

TokenWindow *windowOf(pANTLR3_INT_STREAM)
{
    return activeWindow;
}

} // namespace

TokenWindow::TokenWindow(pANTLR3_COMMON_TOKEN_STREAM stream, pANTLR3_LEXER lexer)
    : stream_(stream), lexer_(lexer), lexerFactory_(lexer->rec->state->tokFactory),
      lines_(stream->tstream->tokenSource, &factory_)
{
    // The stream's own functions are replaced; its structure stays, because
    // the runtime reads a parser's stream as a common token stream.
    pANTLR3_TOKEN_STREAM ts = stream->tstream;
    pANTLR3_INT_STREAM is = ts->istream;
    ts->_LT = lookAhead;
    ts->get = get;
    is->_LA = lookAheadType;
    is->consume = consume;
    is->mark = mark;
    is->rewind = rewind;
    is->rewindLast = rewindLast;
    is->release = release;
    is->seek = seek;
    is->index = index;
    is->size = size;
    static_cast<ParseSession *>(lexer->rec->state->userp)->tokenWindow = this;
    previousActive_ = activeWindow;
    activeWindow = this;

    std::memcpy(static_cast<ANTLR3_TOKEN_FACTORY *>(&factory_), lexerFactory_, sizeof(ANTLR3_TOKEN_FACTORY));
    factory_.window = this;
    factory_.newToken = newToken;
    factory_.reset = keepTokens;
    factory_.close = keepTokens;
    lexer->rec->state->tokFactory = &factory_;
    p_ = nextOnChannel(0);
}

TokenWindow::~TokenWindow()
{
    static_cast<ParseSession *>(lexer_->rec->state->userp)->tokenWindow = nullptr;
    lexer_->rec->state->tokFactory = lexerFactory_;
    activeWindow = previousActive_;
}

TokenWindow *TokenWindow::of(pANTLR3_TOKEN_STREAM stream)
{
    return stream != nullptr && stream->_LT == lookAhead ? activeWindow : nullptr;
}

void TokenWindow::keepTokens(pANTLR3_TOKEN_FACTORY) {}

void initialiseFactoryToken(pANTLR3_TOKEN_FACTORY factory, pANTLR3_COMMON_TOKEN token)
{
    std::memcpy(static_cast<void *>(token), &factory->unTruc, sizeof(ANTLR3_COMMON_TOKEN));
    token->input = factory->input;
    token->strFactory = factory->input != nullptr ? factory->input->strFactory : nullptr;
    token->factoryMade = ANTLR3_TRUE;
}

pANTLR3_COMMON_TOKEN TokenWindow::newToken(pANTLR3_TOKEN_FACTORY factory)
{
    auto *own = static_cast<Factory *>(factory);
    pANTLR3_COMMON_TOKEN token = own->window->allocateToken();
    initialiseFactoryToken(factory, token);
    return token;
}

pANTLR3_COMMON_TOKEN TokenWindow::allocateToken()
{
    if (!freeTokens_.empty()) {
        pANTLR3_COMMON_TOKEN token = freeTokens_.back();
        freeTokens_.pop_back();
        return token;
    }
    if (slabs_.empty() || slabUsed_ == slabSize) {
        // Not zero-filled: newToken initialises each token as it hands it
        // out, so the pages of a slab are touched only as far as it is used
        // (a DDL script reuses its first few hundred tokens statement after
        // statement).
        slabs_.push_back(std::unique_ptr<ANTLR3_COMMON_TOKEN[]>(new ANTLR3_COMMON_TOKEN[slabSize]));
        slabUsed_ = 0;
    }
    return &slabs_.back()[slabUsed_++];
}

bool TokenWindow::fetch()
{
    if (eof_ != nullptr) {
        return false;
    }
    pANTLR3_TOKEN_SOURCE source = stream_->tstream->tokenSource;
    pANTLR3_COMMON_TOKEN token = lines_.next();
    if (token == nullptr || token->type == ANTLR3_TOKEN_EOF) {
        eof_ = token != nullptr ? token : &source->eofToken;
        eof_->index = readCount();
        return false;
    }
    token->index = readCount();
    tokens_.push_back(token);
    return true;
}

pANTLR3_COMMON_TOKEN TokenWindow::rawSlow(ANTLR3_MARKER index)
{
    if (index < base_) {
        return nullptr;
    }
    while (index >= readCount()) {
        if (!fetch()) {
            return nullptr;
        }
    }
    return tokens_[static_cast<size_t>(index - base_)];
}

bool TokenWindow::onChannel(ANTLR3_MARKER index)
{
    pANTLR3_COMMON_TOKEN token = raw(index);
    return token != nullptr && token->channel == stream_->channel;
}

ANTLR3_MARKER TokenWindow::nextOnChannel(ANTLR3_MARKER index)
{
    while (raw(index) != nullptr && !onChannel(index)) {
        ++index;
    }
    return index;
}

pANTLR3_COMMON_TOKEN TokenWindow::endToken()
{
    while (fetch()) {
    }
    return eof_;
}

void TokenWindow::moveTo(ANTLR3_MARKER index)
{
    p_ = nextOnChannel(index < base_ ? base_ : index);
}

void TokenWindow::readAll()
{
    while (fetch()) {
    }
}

void TokenWindow::releaseConsumed()
{
    const ANTLR3_MARKER cut = std::min<ANTLR3_MARKER>(p_ - keptBehind - base_, static_cast<ANTLR3_MARKER>(tokens_.size()));
    if (cut <= 0) {
        return;
    }
    freeTokens_.insert(freeTokens_.end(), tokens_.begin(), tokens_.begin() + cut);
    tokens_.erase(tokens_.begin(), tokens_.begin() + cut);
    base_ += cut;
}

bool TokenWindow::skipDataStatement()
{
    if (eof_ != nullptr || readCount() != p_ + 1) {
        return false;
    }
    pANTLR3_COMMON_TOKEN first = raw(p_);
    std::vector<pANTLR3_COMMON_TOKEN> dropped;
    if (first == nullptr || !lines_.skipDataStatement(first, dropped)) {
        return false;
    }
    freeTokens_.insert(freeTokens_.end(), dropped.begin(), dropped.end());
    return true;
}

bool TokenWindow::startAhead(pANTLR3_COMMON_TOKEN *second)
{
    if (eof_ != nullptr || readCount() != p_ + 1 || stream_->channel != ANTLR3_TOKEN_DEFAULT_CHANNEL) {
        return false;
    }
    pANTLR3_COMMON_TOKEN first = raw(p_);
    return first != nullptr && lines_.startAhead(first, second);
}

void TokenWindow::endAhead(bool pass)
{
    lines_.endAhead(pass, freeTokens_);
}

pANTLR3_COMMON_TOKEN TokenWindow::lookAhead(pANTLR3_TOKEN_STREAM, ANTLR3_INT32 k)
{
    // The generated parser asks for LA(1) several times per token, through a
    // function pointer: the current token, once read, is answered here
    // without a call or a stack frame.
    TokenWindow *window = activeWindow;
    const ANTLR3_MARKER offset = window->p_ - window->base_;
    if (k == 1 && offset >= 0 && offset < static_cast<ANTLR3_MARKER>(window->tokens_.size())) {
        return window->tokens_[static_cast<size_t>(offset)];
    }
    // LT(-1), asked at the end of every rule for its stop token.
    const ANTLR3_MARKER back = window->previous_ - window->base_;
    if (k == -1 && window->previousFor_ == window->p_ && back >= 0 &&
        back < static_cast<ANTLR3_MARKER>(window->tokens_.size())) {
        return window->tokens_[static_cast<size_t>(back)];
    }
    return window->lookAheadFar(k);
}

pANTLR3_COMMON_TOKEN TokenWindow::lookAheadFar(ANTLR3_INT32 k)
{
    if (k == 1) {
        pANTLR3_COMMON_TOKEN token = raw(p_);
        return token != nullptr ? token : endToken();
    }
    if (k == 0) {
        return nullptr;
    }
    if (k == -1 && previousFor_ == p_) {
        return raw(previous_);  // nullptr once released, as the walk back would find
    }
    if (k < 0) {
        // k tokens back on the parser's channel.
        ANTLR3_MARKER i = p_;
        for (ANTLR3_INT32 n = 0; n < -k; ++n) {
            do {
                --i;
            } while (i >= base_ && !onChannel(i));
            if (i < base_) {
                return nullptr;
            }
        }
        return raw(i);
    }
    ANTLR3_MARKER i = p_;
    for (ANTLR3_INT32 n = 1; n < k && raw(i) != nullptr; ++n) {
        i = nextOnChannel(i + 1);
    }
    pANTLR3_COMMON_TOKEN token = raw(i);
    return token != nullptr ? token : endToken();
}

pANTLR3_COMMON_TOKEN TokenWindow::get(pANTLR3_TOKEN_STREAM ts, ANTLR3_UINT32 i)
{
    return of(ts)->raw(static_cast<ANTLR3_MARKER>(i));
}

ANTLR3_UINT32 TokenWindow::lookAheadType(pANTLR3_INT_STREAM is, ANTLR3_INT32 k)
{
    pANTLR3_COMMON_TOKEN token = lookAhead(static_cast<pANTLR3_TOKEN_STREAM>(is->super), k);
    return token != nullptr ? token->type : ANTLR3_TOKEN_INVALID;
}

void TokenWindow::consume(pANTLR3_INT_STREAM is)
{
    TokenWindow *window = windowOf(is);
    pANTLR3_COMMON_TOKEN current = window->raw(window->p_);
    if (current != nullptr) {
        const ANTLR3_MARKER from = window->p_;
        window->p_ = window->nextOnChannel(from + 1);
        if (current->channel == window->stream_->channel) {
            window->previous_ = from;
            window->previousFor_ = window->p_;
        }
    }
}

ANTLR3_MARKER TokenWindow::mark(pANTLR3_INT_STREAM is)
{
    TokenWindow *window = windowOf(is);
    window->lastMarker_ = window->p_;
    return window->lastMarker_;
}

void TokenWindow::rewind(pANTLR3_INT_STREAM is, ANTLR3_MARKER marker)
{
    windowOf(is)->p_ = marker;
}

void TokenWindow::rewindLast(pANTLR3_INT_STREAM is)
{
    TokenWindow *window = windowOf(is);
    window->p_ = window->lastMarker_;
}

void TokenWindow::release(pANTLR3_INT_STREAM, ANTLR3_MARKER) {}

void TokenWindow::seek(pANTLR3_INT_STREAM is, ANTLR3_MARKER index)
{
    windowOf(is)->p_ = index;
}

ANTLR3_MARKER TokenWindow::index(pANTLR3_INT_STREAM is)
{
    return windowOf(is)->p_;
}

ANTLR3_UINT32 TokenWindow::size(pANTLR3_INT_STREAM is)
{
    return static_cast<ANTLR3_UINT32>(windowOf(is)->readCount());
}

} // namespace sqlantlr
