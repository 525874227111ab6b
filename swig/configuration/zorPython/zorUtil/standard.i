// Objects of the standard library, for functions that take them as they are: texts that somebody else keeps, streams,
// lists of texts.

%{
#include <sstream>
#include <string_view>
#include <unordered_map>
#include <vector>

// The texts behind the views that Python made: a view doesn't keep its own.
static std::unordered_map<std::string_view const*, std::string>& zorViewedTexts() {
  static auto& texts = *new std::unordered_map<std::string_view const*, std::string>();
  return texts;
}
%}

%rename(StringView) std::string_view;
%rename(StringStream) std::stringstream;

namespace std {

/** A text that a function looks at without copying it. */
class string_view {
public:
  %extend {
    /** \param text - the text, of which the view keeps a copy */
    string_view(std::string const& text) {
      auto view = std::make_unique<std::string_view>();
      std::string const& kept = zorViewedTexts()[view.get()] = text;
      *view = kept;
      return view.release();
    }
    ~string_view() {
      zorViewedTexts().erase($self);
      delete $self;
    }
    size_t __len__() const { return $self->size(); }
    std::string __str__() const { return std::string(*$self); }
    std::string __repr__() const { return "StringView(" + zorBinding::quotedText(std::string(*$self)) + ")"; }
  }
};

/** A text that functions write to and read from. */
class stringstream {
public:
  %extend {
    /** \param text - what there is to read; writing goes on behind it */
    stringstream(std::string const& text = "") {
      return new std::stringstream(text, std::ios::in | std::ios::out | std::ios::ate);
    }
    /** Adds a text at the end. */
    void write(std::string const& text) { $self->write(text.data(), static_cast<std::streamsize>(text.size())); }
    /** \return what has not been read yet */
    std::string read() {
      std::string rest(std::istreambuf_iterator<char>(*$self), {});
      $self->clear();
      return rest;
    }
    /** \return all of the text, read or not */
    std::string str() const { return $self->str(); }
    std::string __str__() const { return $self->str(); }
    std::string __repr__() const { return "StringStream(" + zorBinding::quotedText($self->str()) + ")"; }
  }
};

template <class T, class A = std::allocator<T> >
class vector {
public:
  vector();
  ~vector();
  size_t capacity() const;
};

} // namespace std

ZOR_TEXT_VECTOR(StringList, vector, std::vector<std::string>)
