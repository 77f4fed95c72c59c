#pragma once

#include "OnDemandLibrary.h"

#include <libmount/libmount.h>

namespace brisko {

/// The library of the mount table.
inline constinit OnDemandLibrary libmount{"libmount.so.1"};

BRISKO_ON_DEMAND(libmount, mnt_free_iter);
BRISKO_ON_DEMAND(libmount, mnt_fs_get_devno);
BRISKO_ON_DEMAND(libmount, mnt_fs_get_fstype);
BRISKO_ON_DEMAND(libmount, mnt_fs_get_root);
BRISKO_ON_DEMAND(libmount, mnt_fs_get_source);
BRISKO_ON_DEMAND(libmount, mnt_fs_get_srcpath);
BRISKO_ON_DEMAND(libmount, mnt_fs_get_target);
BRISKO_ON_DEMAND(libmount, mnt_fs_is_netfs);
BRISKO_ON_DEMAND(libmount, mnt_fs_is_pseudofs);
BRISKO_ON_DEMAND(libmount, mnt_new_iter);
BRISKO_ON_DEMAND(libmount, mnt_new_table_from_file);
BRISKO_ON_DEMAND(libmount, mnt_table_find_devno);
BRISKO_ON_DEMAND(libmount, mnt_table_find_target);
BRISKO_ON_DEMAND(libmount, mnt_table_next_fs);
BRISKO_ON_DEMAND(libmount, mnt_unref_table);

}  // namespace brisko
