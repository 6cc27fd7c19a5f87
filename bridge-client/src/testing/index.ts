export type { Container, ContainerCommand } from "./container-link.js";
export type { HostSequence, MemoryHost } from "./memory-host.js";
export type { PanelPage } from "./memory-page.js";
export { MemoryPanel, type MemoryPanelOptions } from "./memory-panel.js";
