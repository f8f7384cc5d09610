// Kinds of items in a record of getattrlistbulk(2).
#pragma once

enum vtype { VNON, VREG, VDIR, VBLK, VCHR, VLNK, VSOCK, VFIFO };
