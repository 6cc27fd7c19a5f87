export { type Bridge, type BridgePage, type CallOptions, type CallParameters, createBridge } from "./bridge.js";
export type {
    Arguments,
    Command,
    Commands,
    Comment,
    EventName,
    Events,
    ExportConfig,
    Marker,
    NoArguments,
    Result,
    Sequence,
} from "./contract.js";
export { BridgeAborted, BridgeError, BridgeInvalidArgument, BridgeTimeout, BridgeUnavailable } from "./errors.js";
