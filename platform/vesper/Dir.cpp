#include "platform/vesper/Dir.h"

#include <utility>

namespace Vesper {

Dir::Ptr dirFactory( Name name, BackPtr<Entity> parent, Name parentAttrName ) {
   Dir::Ptr dir( new Dir( std::move( name ), parent, std::move( parentAttrName ) ) );
   dir->hasNotificationActiveIs( true );
   return dir;
}

}  // namespace Vesper
