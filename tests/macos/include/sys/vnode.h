// The kinds of file system objects that `getattrlistbulk` tells, so that tools/check-macos can
// compile the macOS sources without an SDK. Written from the manual page of getattrlist.
#pragma once

enum vtype { VNON, VREG, VDIR, VBLK, VCHR, VLNK, VSOCK, VFIFO, VBAD, VSTR, VCPLX };
