#pragma once

namespace workbench {

// What the container application owns on the session bus.
inline constexpr char const* ContainerName = "com.zelvix.fcp.Container";

} // namespace workbench
