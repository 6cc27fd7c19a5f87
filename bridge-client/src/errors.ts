import type { Command } from "./contract.js";

/** Why a call has no answer. The name of each kind survives minification; `command` is the call that failed. */
export class BridgeError extends Error {
    constructor(
        readonly command: Command,
        reason: string,
        options?: ErrorOptions,
    ) {
        super(`"${command}" ${reason}`, options);
    }
}

/** Nobody answered in time. The command may have been carried out all the same. */
export class BridgeTimeout extends BridgeError {
    override name = "BridgeTimeout";
}

/** This page is not inside the panel. */
export class BridgeUnavailable extends BridgeError {
    override name = "BridgeUnavailable";
}

/** The call's signal was aborted; `cause` is its reason. What was posted before cannot be taken back. */
export class BridgeAborted extends BridgeError {
    override name = "BridgeAborted";
}

/** The panel would never answer this call, or do nothing: it was not posted. */
export class BridgeInvalidArgument extends BridgeError {
    override name = "BridgeInvalidArgument";
}
