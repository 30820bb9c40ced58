// A directory of the agent's tree of objects: a named entity under which
// other entities hang (Entity.h tells how names, parents and children work).
//
// It has no attributes of its own. The generic ACL machine is handed two of
// them (the interface and the hardware configuration directories) so that it
// is built from the same inputs as on the switch; the ACL back-end reads
// nothing of them.
#pragma once

#include <utility>

#include "platform/vesper/Entity.h"
#include "platform/vesper/Ptr.h"
#include "platform/vesper/String.h"

namespace Vesper {

class Dir : public Entity {
   VESPER_FWK_TYPE( "Vesper::Dir" )

 public:
   using Ptr = Vesper::Ptr<Dir>;
   using PtrConst = Vesper::Ptr<const Dir>;

   explicit Dir( Name name, BackPtr<Entity> parent = nullptr, Name parentAttrName = Name() )
       : Entity( std::move( name ), parent, std::move( parentAttrName ) ) {}
};

// A new directory with notifications on.
Dir::Ptr dirFactory( Name name, BackPtr<Entity> parent = nullptr, Name parentAttrName = Name() );

}  // namespace Vesper
