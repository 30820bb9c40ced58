#include "platform/tcam/ModRequest.h"

#include "platform/pylon/ValueText.h"

namespace Halyard {

std::string valueToStrep( const ModRequest& request ) {
   return Pylon::ValueTextWriter( "Halyard::ModRequest" )
       .attribute( "planned", Pylon::boolText( request.planned() ) )
       .attribute( "reasonCode", std::to_string( request.reasonCode() ) )
       .attribute( "detail", Pylon::quoteText( request.detail().view() ) )
       .done();
}

std::ostream& operator<<( std::ostream& os, const ModRequest& request ) {
   return os << valueToStrep( request );
}

}  // namespace Halyard
