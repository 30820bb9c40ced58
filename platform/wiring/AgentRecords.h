// The records of neighbouring agents that Fennel::AclSm is wired to.
//
// The machine is built from fourteen inputs, five of which belong to other
// agents of the switch: the error-disable causes, the link aggregation
// input, the bridging configuration and the two sub-interface directories.
// Each is a counted object with its type record, made by its factory with
// notifications on, and compared by identity. Of their contents the generic
// layer reads one thing, the members of each port-channel: an ACL bound to a
// port-channel is bound to its member interfaces, since the chip sees ports.
#pragma once

#include <map>
#include <vector>

#include "platform/pylon/IntfId.h"
#include "platform/vesper/Dir.h"
#include "platform/vesper/Notifier.h"
#include "platform/vesper/Ptr.h"
#include "platform/vesper/String.h"

namespace Errdisable {

// The causes for which interfaces are error-disabled; nothing here reads it.
class CauseStatus : public Vesper::NotifierBase<> {
   VESPER_FWK_TYPE( "Errdisable::CauseStatus" )

 public:
   using Ptr = Vesper::Ptr<CauseStatus>;
   using PtrConst = Vesper::Ptr<const CauseStatus>;
   class NotifieeConst : public Vesper::NotifieeBase<CauseStatus> {};

 private:
   friend Ptr causeStatusFactory();
   CauseStatus() = default;
};

CauseStatus::Ptr causeStatusFactory();

}  // namespace Errdisable

namespace Lag::Input {

// The link aggregation agent's input configuration: the member interfaces of each
// port-channel, in the order configured.
class Config : public Vesper::NotifierBase<> {
   VESPER_FWK_TYPE( "Lag::Input::Config" )

 public:
   using Ptr = Vesper::Ptr<Config>;
   using PtrConst = Vesper::Ptr<const Config>;
   class NotifieeConst : public Vesper::NotifieeBase<Config> {};

   // The members of `portChannel`; empty for a port-channel without members or not known.
   const std::vector<Pylon::IntfId>& member( Pylon::IntfId portChannel ) const;
   // Sets the members of `portChannel`; an empty list removes it.
   void memberIs( Pylon::IntfId portChannel, std::vector<Pylon::IntfId> members );
   const std::map<Pylon::IntfId, std::vector<Pylon::IntfId> >& members() const { return member_; }

 private:
   friend Ptr configFactory();
   Config() = default;

   std::map<Pylon::IntfId, std::vector<Pylon::IntfId> > member_;
};

Config::Ptr configFactory();

}  // namespace Lag::Input

namespace Bridging {

// The bridging agent's configuration; nothing here reads it.
class Config : public Vesper::NotifierBase<> {
   VESPER_FWK_TYPE( "Bridging::Config" )

 public:
   using Ptr = Vesper::Ptr<Config>;
   using PtrConst = Vesper::Ptr<const Config>;
   class NotifieeConst : public Vesper::NotifieeBase<Config> {};

 private:
   friend Ptr configFactory();
   Config() = default;
};

Config::Ptr configFactory();

}  // namespace Bridging

namespace Interface {

// The directory of sub-interface status records; nothing here reads it.
class SubIntfStatusDir : public Vesper::Dir {
   VESPER_FWK_TYPE( "Interface::SubIntfStatusDir" )

 public:
   using Ptr = Vesper::Ptr<SubIntfStatusDir>;
   using PtrConst = Vesper::Ptr<const SubIntfStatusDir>;
   using Dir::Dir;
};

// The directory of sub-interface configuration records; nothing here reads it.
class SubIntfConfigDir : public Vesper::Dir {
   VESPER_FWK_TYPE( "Interface::SubIntfConfigDir" )

 public:
   using Ptr = Vesper::Ptr<SubIntfConfigDir>;
   using PtrConst = Vesper::Ptr<const SubIntfConfigDir>;
   using Dir::Dir;
};

SubIntfStatusDir::Ptr subIntfStatusDirFactory( Vesper::Name name );
SubIntfConfigDir::Ptr subIntfConfigDirFactory( Vesper::Name name );

}  // namespace Interface
