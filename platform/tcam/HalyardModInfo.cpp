#include "platform/tcam/HalyardModInfo.h"

#include "platform/pylon/ValueText.h"

namespace Halyard {

std::string valueToStrep( const HalyardModInfo& info ) {
   return Pylon::ValueTextWriter( "Halyard::HalyardModInfo" )
       .attribute( "chip", std::to_string( info.chip() ) )
       .attribute( "modId", valueToStrep( info.modId() ) )
       .attribute( "chipInfo", valueToStrep( info.chipInfo() ) )
       .attribute( "chipName", Pylon::quoteText( info.chipName().view() ) )
       .done();
}

std::ostream& operator<<( std::ostream& os, const HalyardModInfo& info ) {
   return os << valueToStrep( info );
}

}  // namespace Halyard
