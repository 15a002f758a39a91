#include "eventkit/embedded/ical/stream.h"

#include "eventkit/embedded/ical/content_lines.h"

namespace ek::ical {

namespace {

bool isCalendar(std::string_view name) { return equalNames(name, "VCALENDAR"); }

class Walk {
 public:
  Walk(std::string_view text, const StreamHandler& handler)
      : text_(text), scanner_(text), handler_(handler) {}

  void run() {
    if (text_.starts_with("\xFF\xFE") || text_.starts_with("\xFE\xFF"))
      return report(1, "the text is UTF-16 and not UTF-8");
    for (RawLine line; scanner_.next(line);) {
      std::string_view name;
      const Marker marker = markerOf(line, name);
      if (marker != Marker::none) isInJunk_ = false;
      if (marker == Marker::begin) {
        begin(line, name);
      } else if (marker == Marker::end) {
        end(line, name);
      } else if (nesting_.depth() == 0) {
        property(line);
      }
    }
    endPiece(text_.size());
    endCalendar();
  }

 private:
  std::size_t offsetOf(const RawLine& line) const {
    return static_cast<std::size_t>(line.raw.data() - text_.data());
  }

  void begin(const RawLine& line, std::string_view name) {
    const bool isAloneInJunk = isSkipping_ && standsAlone(name);
    const std::size_t ended =
        isCalendar(name) || isAloneInJunk ? nesting_.depth() : nesting_.endedByBegin(name);
    if (ended > 0) {
      if (!isSkipping_) reportMissingEnd();
      nesting_.close(ended);
      if (nesting_.depth() == 0) endPiece(offsetOf(line));
    }
    if (isCalendar(name)) {
      endCalendar();
      return beginCalendar(false);
    }
    if (nesting_.depth() == 0) beginPiece(line, name);
    nesting_.open(name);
  }

  void end(const RawLine& line, std::string_view name) {
    if (isCalendar(name)) {
      if (nesting_.depth() > 0) {
        if (!isSkipping_) reportMissingEnd();
        nesting_.close(nesting_.depth());
        endPiece(offsetOf(line));
      }
      if (!isInCalendar_ || isImplied_) report(line.number, "END:VCALENDAR without its BEGIN");
      return endCalendar();
    }
    if (nesting_.depth() == 0) {
      if (isInCalendar_) report(line.number, "END:" + std::string(name) + " without its BEGIN");
      return;
    }
    nesting_.close(nesting_.endedByEnd(name));
    if (nesting_.depth() == 0) endPiece(offsetOf(line) + line.raw.size());
  }

  void property(const RawLine& line) {
    if (trimmed(line.content).empty() && !line.isFolded) return;
    std::string_view content = line.content;
    std::string whole;
    if (line.isFolded) {
      unfold(line.raw, whole);
      content = whole;
    }
    const LineParts parts = partsOf(content);
    const bool isUsable =
        isInCalendar_ && !isImplied_ && parts.nameLength > 0 && parts.nameLength <= line.content.size();
    if (isUsable) {
      isInJunk_ = false;
      if (handler_.piece)
        handler_.piece({line.raw, line.content.substr(0, parts.nameLength), line.number, false});
      return;
    }
    // Once for a run of such lines: a whole file may be something else.
    if (!isInJunk_)
      report(line.number, isInCalendar_ ? "not a line of a calendar" : "not part of a calendar");
    isInJunk_ = true;
  }

  void beginPiece(const RawLine& line, std::string_view name) {
    isSkipping_ = !isInCalendar_ && !standsAlone(name);
    if (isSkipping_) report(line.number, "BEGIN:" + std::string(name) + " outside of a calendar");
    if (!isInCalendar_ && !isSkipping_) beginCalendar(true);
    piece_ = {{}, name, line.number, true};
    pieceBegin_ = offsetOf(line);
  }

  void endPiece(std::size_t end) {
    if (piece_.isComponent && !isSkipping_ && handler_.piece) {
      piece_.text = text_.substr(pieceBegin_, end - pieceBegin_);
      handler_.piece(piece_);
    }
    piece_ = {};
    isSkipping_ = false;
  }

  void beginCalendar(bool isImplied) {
    isInCalendar_ = true;
    isImplied_ = isImplied;
    if (handler_.beginCalendar) handler_.beginCalendar();
  }

  void endCalendar() {
    if (isInCalendar_ && handler_.endCalendar) handler_.endCalendar();
    isInCalendar_ = false;
    isImplied_ = false;
  }

  void report(std::size_t line, std::string reason) {
    if (handler_.problem) handler_.problem({line, std::move(reason)});
  }
  void reportMissingEnd() {
    report(piece_.line, "BEGIN:" + std::string(piece_.name) + " has no END; what there is of it is taken");
  }

  std::string_view text_;
  LineScanner scanner_;
  const StreamHandler& handler_;
  Nesting nesting_;  // inside of a calendar, without the calendar itself
  Piece piece_;      // the one that is open
  std::size_t pieceBegin_ = 0;
  bool isSkipping_ = false;  // the open piece is nothing for a calendar
  bool isInCalendar_ = false;
  bool isImplied_ = false;  // components without a calendar around them
  bool isInJunk_ = false;
};

}  // namespace

void walkStream(std::string_view text, const StreamHandler& handler) { Walk(text, handler).run(); }

}  // namespace ek::ical
