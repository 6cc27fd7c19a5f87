import { type BridgePage, createBridge } from "bridge-client";
import type { PanelPage } from "bridge-client/testing";
import { render } from "preact";
import { Comments } from "./components/Comments.js";
import { Composer } from "./components/Composer.js";
import { Footer } from "./components/Footer.js";
import { Banner, Header, SequenceCard } from "./components/Header.js";
import { Review } from "./review.js";
import { attachSample } from "./sample.js";
import { playBack, recorded, taskOf } from "./session.js";

const place = document.getElementById("page")!;
const fetchHere = fetch.bind(window);

function showReview(page: BridgePage): void {
    const bridge = createBridge(page);
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

    render(<Page />, place);
    addEventListener("pagehide", () => review.stop());
    review.start();
}

function showReplay(page: BridgePage): void {
    render(<p class="replay">Playing a recording back …</p>, place);
    void playBack(page, fetchHere);
}

// A browser that shows the page beside the panel takes no part.
const page: BridgePage = window;
const task = createBridge(page).available ? taskOf(document) : undefined;
if (task?.mode === "replay")
    showReplay(page);
else
    showReview(task ? recorded(page, task.began, fetchHere) : page);
