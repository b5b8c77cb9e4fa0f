// A token stream for the parser that reads tokens from the lexer only as the
// parser looks ahead, and recycles the tokens of statements that are done.
// The runtime's common token stream reads the whole script before the first
// look-ahead and keeps every token (a few hundred bytes each) to the end; a
// parse that walks each statement as soon as it is parsed needs only the
// tokens of the statement at hand.
#pragma once

#include "ScriptLines.h"

#include <antlr3.h>

#include <memory>
#include <vector>

namespace sqlantlr {

// Sets up a token handed out by a factory of our own as the runtime's factory
// would: the factory's initialised token, with the factory's input.
void initialiseFactoryToken(pANTLR3_TOKEN_FACTORY factory, pANTLR3_COMMON_TOKEN token);

class TokenWindow {
public:
    // Takes over the functions of a common token stream made over the lexer;
    // the stream keeps its layout, so the runtime may go on treating it as a
    // common token stream. Tokens come from a recycling factory of the window.
    TokenWindow(pANTLR3_COMMON_TOKEN_STREAM stream, pANTLR3_LEXER lexer);
    ~TokenWindow();
    TokenWindow(const TokenWindow &) = delete;
    TokenWindow &operator=(const TokenWindow &) = delete;

    // The window of a token stream, or nullptr for a stream it does not own.
    static TokenWindow *of(pANTLR3_TOKEN_STREAM stream);

    // Gives the tokens before the current one back for reuse, keeping a few
    // behind it for look-behind. Only between statements.
    void releaseConsumed();

    // At the start of a statement whose first word is the current token and
    // the last one read: lets the script-line filter skip a data statement's
    // text (ScriptLines::skipDataStatement). True when it did.
    bool skipDataStatement();

    // Reading a CREATE TABLE statement ahead from the lexer's fast path
    // (ScriptLines::startAhead and the rest), at the start of the statement
    // whose first word is the current token and the last one read:
    // startAhead sets second to the second word if it was read already (else
    // nullptr), or returns false when the statement cannot be read that way.
    bool startAhead(pANTLR3_COMMON_TOKEN *second);
    pANTLR3_COMMON_TOKEN nextAhead() { return lines_.nextAhead(); }
    bool stoppedAhead() const { return lines_.stoppedAhead(); }
    void recycleAhead(size_t keepLast) { lines_.recycleAhead(keepLast); }
    // With pass, the statement's text is passed unread up to its ";", which
    // is the next token the window reads; else the lexer goes back.
    void endAhead(bool pass);

    // Raw access, hidden tokens included: absolute indexes from 0.
    pANTLR3_COMMON_TOKEN raw(ANTLR3_MARKER index)  // nullptr past the end of input
    {
        const ANTLR3_MARKER offset = index - base_;
        if (offset >= 0 && offset < static_cast<ANTLR3_MARKER>(tokens_.size())) {
            return tokens_[static_cast<size_t>(offset)];
        }
        return rawSlow(index);
    }
    ANTLR3_MARKER current() const { return p_; }
    // Moves to a raw index and then on to the next token on the parser's channel.
    void moveTo(ANTLR3_MARKER index);

    // Reads every remaining token (for debugging dumps).
    void readAll();
    ANTLR3_MARKER readCount() const { return base_ + static_cast<ANTLR3_MARKER>(tokens_.size()); }

private:
    static pANTLR3_COMMON_TOKEN lookAhead(pANTLR3_TOKEN_STREAM ts, ANTLR3_INT32 k);
    // LT(k) when it is not the current token already read.
    __attribute__((noinline)) pANTLR3_COMMON_TOKEN lookAheadFar(ANTLR3_INT32 k);
    static pANTLR3_COMMON_TOKEN get(pANTLR3_TOKEN_STREAM ts, ANTLR3_UINT32 i);
    static ANTLR3_UINT32 lookAheadType(pANTLR3_INT_STREAM is, ANTLR3_INT32 k);
    static void consume(pANTLR3_INT_STREAM is);
    static ANTLR3_MARKER mark(pANTLR3_INT_STREAM is);
    static void rewind(pANTLR3_INT_STREAM is, ANTLR3_MARKER marker);
    static void rewindLast(pANTLR3_INT_STREAM is);
    static void release(pANTLR3_INT_STREAM is, ANTLR3_MARKER marker);
    static void seek(pANTLR3_INT_STREAM is, ANTLR3_MARKER index);
    static ANTLR3_MARKER index(pANTLR3_INT_STREAM is);
    static ANTLR3_UINT32 size(pANTLR3_INT_STREAM is);
    static pANTLR3_COMMON_TOKEN newToken(pANTLR3_TOKEN_FACTORY factory);
    static void keepTokens(pANTLR3_TOKEN_FACTORY factory);
    pANTLR3_COMMON_TOKEN allocateToken();

    // The lexer's token factory, made to hand out the window's tokens.
    struct Factory : ANTLR3_TOKEN_FACTORY {
        TokenWindow *window = nullptr;
    };

    pANTLR3_COMMON_TOKEN rawSlow(ANTLR3_MARKER index);
    bool fetch();  // reads one more token; false at the end of input
    bool onChannel(ANTLR3_MARKER index);
    ANTLR3_MARKER nextOnChannel(ANTLR3_MARKER index);
    pANTLR3_COMMON_TOKEN endToken();

    pANTLR3_COMMON_TOKEN_STREAM stream_;
    pANTLR3_LEXER lexer_;
    pANTLR3_TOKEN_FACTORY lexerFactory_;  // the lexer's own, restored on destruction
    Factory factory_{};
    ScriptLines lines_;  // script-level lines between the lexer and the parser
    std::vector<pANTLR3_COMMON_TOKEN> tokens_;  // raw tokens from index base_ on
    ANTLR3_MARKER base_ = 0;
    ANTLR3_MARKER p_ = 0;
    ANTLR3_MARKER lastMarker_ = 0;
    // The parser-channel token before index previousFor_ is at previous_:
    // set by consume, so that LT(-1), which every rule asks for its stop
    // token, needs no walk back over hidden tokens. A window's tokens and
    // their channels never change, so the pair stays true once set.
    ANTLR3_MARKER previousFor_ = -1;
    ANTLR3_MARKER previous_ = -1;
    pANTLR3_COMMON_TOKEN eof_ = nullptr;
    std::vector<pANTLR3_COMMON_TOKEN> freeTokens_;
    std::vector<std::unique_ptr<ANTLR3_COMMON_TOKEN[]>> slabs_;
    size_t slabUsed_ = 0;
    TokenWindow *previousActive_ = nullptr;
};

} // namespace sqlantlr
