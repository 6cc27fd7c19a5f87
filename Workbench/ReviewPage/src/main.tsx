import { createBridge } from "bridge-client";
import type { PanelPage } from "bridge-client/testing";
import { render } from "preact";
import { Comments } from "./components/Comments.js";
import { Composer } from "./components/Composer.js";
import { Footer } from "./components/Footer.js";
import { Banner, Header, SequenceCard } from "./components/Header.js";
import { Review } from "./review.js";
import { attachSample } from "./sample.js";

const bridge = createBridge();
const sample = bridge.available ? null : attachSample(window as unknown as PanelPage);
const review = new Review({
    bridge,
    storage: window.localStorage,
    nextFrame: (paint) => requestAnimationFrame(paint),
    isAttached: sample === null,
});

function Page() {
    return (
        <>
            <Banner sample={sample} />
            <Header review={review} />
            <main>
                <SequenceCard review={review} />
                <Composer review={review} />
                <Comments review={review} />
            </main>
            <Footer review={review} />
        </>
    );
}

render(<Page />, document.getElementById("page")!);
addEventListener("pagehide", () => review.stop());
review.start();
