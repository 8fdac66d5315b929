// Shows the shop's events, which are finished HTML, escaped by the shop.
"use strict";
const kept = 50;
const exchanges = document.getElementById("exchanges");
const state = document.getElementById("state");
const events = new EventSource("/window/events");

events.onopen = () => { state.textContent = "live"; };
events.onerror = () => {
  state.textContent = events.readyState === EventSource.CLOSED
    ? "Eight browsers watch this page, which is all it can serve. Close one, then reload."
    : "No connection to the shop; trying again.";
};
events.addEventListener("exchanges", (event) => { exchanges.innerHTML = event.data; });
events.addEventListener("shop", (event) => { document.getElementById("shop").innerHTML = event.data; });
events.addEventListener("exchange", (event) => {
  exchanges.insertAdjacentHTML("afterbegin", event.data);
  while (exchanges.children.length > kept) exchanges.lastElementChild.remove();
});
