export type { Container, ContainerCommand } from "./container-link.js";
export type { HostSequence, MemoryHost } from "./memory-host.js";
export { MemoryPanel, type MemoryPanelOptions, type PanelPage } from "./memory-panel.js";
