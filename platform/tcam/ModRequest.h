// A request to the agent supervisor about the forwarding agent, filed with
// HalyardCommonSmData::restartAgentIs().
//
// `planned` says that the exit is intended (a configuration change), not a
// crash; `reasonCode` is the supervisor's code of the reason (the sharing
// manager files 2, a configuration change that needs the chip reconfigured);
// `detail` is free text for the supervisor's log, empty when the code says
// all. What the supervisor does with a request is its own business.
//
// Text: Value('Halyard::ModRequest', ** {'planned': True, 'reasonCode': 2, 'detail': ''})
#pragma once

#include <ostream>
#include <string>
#include <utility>

#include "platform/vesper/String.h"
#include "platform/vesper/Types.h"

namespace Halyard {

class ModRequest {
 public:
   ModRequest() = default;
   ModRequest( bool planned, U32 reasonCode, Vesper::String detail = Vesper::String() )
       : planned_( planned ), reasonCode_( reasonCode ), detail_( std::move( detail ) ) {}

   bool planned() const { return planned_; }
   U32 reasonCode() const { return reasonCode_; }
   const Vesper::String& detail() const { return detail_; }

   friend bool operator==( const ModRequest&, const ModRequest& ) = default;

 private:
   bool planned_ = false;
   U32 reasonCode_ = 0;
   Vesper::String detail_;
};

std::string valueToStrep( const ModRequest& request );
std::ostream& operator<<( std::ostream& os, const ModRequest& request );

}  // namespace Halyard
