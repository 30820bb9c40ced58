#include "platform/vesper/OwnedCollection.h"

namespace Vesper {

std::string nameInUseText( std::string_view attrName, std::string_view newValue,
                           std::string_view oldValue ) {
   std::string text =
       "Reinstantiating the pointer interface where constructor parameter attribute ";
   text.append( attrName );
   text += " has a different value of ";
   text.append( newValue );
   text += " than the current value of ";
   text.append( oldValue );
   text += " not allowed";
   return text;
}

}  // namespace Vesper
