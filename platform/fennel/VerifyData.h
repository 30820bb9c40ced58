// The sink of hardware verification findings.
//
// A verification compares what stands in the hardware with the configuration
// and turns each difference into one line of text. The back-end hands every
// finding here in one of two forms:
//   updateCliVerifyOutput( function, message )  for the operator's verify
//       command: the checking function's signature and the message;
//   verifyOutputIs( VerifyOutput )  for test runs on a simulated switch: the
//       message with the source file, line and function of the check and a
//       severity (the back-end gives 3).
// Findings are kept in the order of arrival, each form in its own list, until
// the reader empties the list. An agent that wants no findings has no sink.
//
// Each change of a list tells the notifiees once.
//
// Threads: activity thread.
#pragma once

#include <ostream>
#include <utility>
#include <vector>

#include "platform/vesper/Notifier.h"
#include "platform/vesper/Ptr.h"
#include "platform/vesper/String.h"
#include "platform/vesper/Types.h"

namespace Fennel {

// One finding with the place of the check that made it.
class VerifyOutput {
 public:
   VerifyOutput() = default;
   VerifyOutput( Vesper::String file, U32 line, Vesper::String function, Vesper::String message,
                 U32 severity )
       : file_( std::move( file ) ),
         line_( line ),
         function_( std::move( function ) ),
         message_( std::move( message ) ),
         severity_( severity ) {}

   const Vesper::String& file() const { return file_; }
   U32 line() const { return line_; }
   const Vesper::String& function() const { return function_; }
   const Vesper::String& message() const { return message_; }
   U32 severity() const { return severity_; }

   friend bool operator==( const VerifyOutput&, const VerifyOutput& ) = default;

 private:
   Vesper::String file_;
   U32 line_ = 0;
   Vesper::String function_;
   Vesper::String message_;
   U32 severity_ = 0;
};

// "file:line: function: message (severity N)".
std::ostream& operator<<( std::ostream& os, const VerifyOutput& output );

// One finding for the operator's command.
struct CliVerifyOutput {
   Vesper::String function;
   Vesper::String message;

   friend bool operator==( const CliVerifyOutput&, const CliVerifyOutput& ) = default;
};

class VerifyData : public Vesper::NotifierBase<> {
   VESPER_FWK_TYPE( "Fennel::VerifyData" )

 public:
   using Ptr = Vesper::Ptr<VerifyData>;
   using PtrConst = Vesper::Ptr<const VerifyData>;

   class NotifieeConst : public Vesper::NotifieeBase<VerifyData> {
    public:
      virtual void onCliVerifyOutput() {}
      virtual void onVerifyOutput() {}
   };

   void updateCliVerifyOutput( Vesper::String function, Vesper::String message );
   const std::vector<CliVerifyOutput>& cliVerifyOutput() const { return cliVerifyOutput_; }
   void cliVerifyOutputDelAll();

   void verifyOutputIs( VerifyOutput output );
   const std::vector<VerifyOutput>& verifyOutput() const { return verifyOutput_; }
   void verifyOutputDelAll();

   // Findings of both forms held now.
   size_t findingCount() const { return cliVerifyOutput_.size() + verifyOutput_.size(); }

 private:
   friend Ptr verifyDataFactory();
   VerifyData() = default;

   std::vector<CliVerifyOutput> cliVerifyOutput_;
   std::vector<VerifyOutput> verifyOutput_;
};

// A new, empty sink with notifications on.
VerifyData::Ptr verifyDataFactory();

}  // namespace Fennel
