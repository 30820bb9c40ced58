#include "platform/vesper/String.h"

namespace Vesper {

CountedText::CountedText( std::string_view text )
    : text_( text.empty() ? nullptr : std::make_shared<const std::string>( text ) ) {}

const std::string& CountedText::emptyText() {
   static const std::string* const text = new std::string;
   return *text;
}

std::ostream& operator<<( std::ostream& os, const CountedText& text ) {
   return os << text.view();
}

}  // namespace Vesper
